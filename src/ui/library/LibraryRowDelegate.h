#pragma once

// Paints a row of the library's list: the class's name above, its state, category, date and
// length below, both cut at the tail; the second line red for the live and the deleted class.
// Main thread only.

#include <QStyledItemDelegate>

class LibraryRowDelegate final : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static constexpr int rowHeight = 46;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
