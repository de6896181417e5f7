#include "ui/library/LibraryRowDelegate.h"

#include "ui/common/Look.h"
#include "ui/library/LibraryLook.h"
#include "ui/library/LibraryModel.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

void LibraryRowDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QPalette &palette = option.palette;
    const bool selected = option.state & QStyle::State_Selected;
    const QRect card = option.rect.adjusted(6, 1, -6, -1);
    if (selected || option.state & QStyle::State_MouseOver) {
        QColor fill = palette.color(QPalette::Highlight);
        if (!selected)
            fill.setAlphaF(0.10f);
        QPainterPath path;
        path.addRoundedRect(card, LibraryLook::radius, LibraryLook::radius);
        painter->fillPath(path, fill);
    }
    const QRect text = card.adjusted(10, 5, -10, -5);
    QFont title = option.font;
    title.setPixelSize(LibraryLook::rowTitleSize);
    title.setWeight(QFont::Medium);
    QFont detail = option.font;
    detail.setPixelSize(LibraryLook::rowDetailSize);
    const QFontMetrics titleMetrics(title), detailMetrics(detail);
    const int gap = 2;
    const int top = text.top() + (text.height() - titleMetrics.height() - gap - detailMetrics.height()) / 2;

    painter->setFont(title);
    painter->setPen(selected ? palette.color(QPalette::HighlightedText) : palette.color(QPalette::Text));
    painter->drawText(QRect(text.left(), top, text.width(), titleMetrics.height()), Qt::AlignLeft | Qt::AlignVCenter,
                      titleMetrics.elidedText(index.data(Qt::DisplayRole).toString().simplified(), Qt::ElideRight, text.width()));

    QColor detailColor = index.data(LibraryModel::AlertRole).toBool() ? LibraryLook::red : Look::secondaryText(palette);
    if (selected)
        detailColor = palette.color(QPalette::HighlightedText);
    painter->setFont(detail);
    painter->setPen(detailColor);
    painter->drawText(QRect(text.left(), top + titleMetrics.height() + gap, text.width(), detailMetrics.height()),
                      Qt::AlignLeft | Qt::AlignVCenter,
                      detailMetrics.elidedText(index.data(LibraryModel::DetailRole).toString(), Qt::ElideRight, text.width()));
    painter->restore();
}

QSize LibraryRowDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return {option.rect.width(), rowHeight};
}
