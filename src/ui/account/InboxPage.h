#pragma once

// The message centre's list: one row per inbox message, newest first, an accent dot on the
// unread ones; or a note when there are none yet. The list is read afresh from the inbox on every
// reload. Main thread only.

#include <QDateTime>
#include <QUuid>
#include <QWidget>

#include <functional>

class MenuRow;
class PageTitle;
class QVBoxLayout;

class InboxPage final : public QWidget
{
    Q_OBJECT

public:
    explicit InboxPage(QWidget *parent = nullptr);

    void reload();
    PageTitle *title() const { return title_; }
    QList<MenuRow *> rows() const;
    // The note shown instead of rows, or empty.
    QString emptyText() const;

    // The short date of a message in the list and on its page: month, day, hour and minute.
    static QString dateText(const QDateTime &date);

    std::function<void(const QUuid &id)> onOpen = [](const QUuid &) {};

private:
    PageTitle *title_;
    QWidget *list_;
    QVBoxLayout *column_;
};
