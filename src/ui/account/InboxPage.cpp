#include "ui/account/InboxPage.h"

#include "report/Inbox.h"
#include "text/LocalDate.h"
#include "ui/account/AccountLook.h"
#include "ui/account/MenuRow.h"
#include "ui/account/PageTitle.h"
#include "ui/account/Scroller.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr int listHeight = 340;

QString detail(const InboxMessage &message)
{
    QString text = InboxPage::dateText(message.date);
    if (!message.report.events.isEmpty())
        text += u" · " + QString::number(message.report.events.size()) + u" 个日期";
    return text;
}

} // namespace

InboxPage::InboxPage(QWidget *parent)
    : QWidget(parent)
    , title_(new PageTitle(u"消息中心"_s, this))
    , list_(new QWidget)
    , column_(new QVBoxLayout(list_))
{
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(2);
    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(10);
    page->addWidget(title_, 0, Qt::AlignHCenter);
    page->addWidget(new Scroller(list_, listHeight, this), 0, Qt::AlignHCenter);
}

QString InboxPage::dateText(const QDateTime &date)
{
    return Text::localDateText(date, Text::WithYear::no);
}

void InboxPage::reload()
{
    while (QLayoutItem *item = column_->takeAt(0)) {
        // Later, not now: the row that was clicked may be what asked for the reload.
        if (QWidget *widget = item->widget()) {
            widget->setParent(nullptr);
            widget->deleteLater();
        }
        delete item;
    }
    const QList<InboxMessage> messages = Inbox::all();
    if (messages.isEmpty()) {
        auto *note = AccountLook::label(
            u"还没有消息。\n每节课结束后，核对过的课堂笔记、老师说的重要日期和思维导图会出现在这里。"_s, 12.5,
            ToneLabel::Tone::secondary, list_);
        note->setFixedWidth(AccountLook::textWidth);
        note->setObjectName(u"empty"_s);
        column_->addWidget(note, 0, Qt::AlignHCenter);
    }
    for (const InboxMessage &message : messages) {
        auto *row = new MenuRow(u"doc.text"_s, message.title, detail(message), list_, MenuRow::Shape::stacked);
        row->setObjectName(message.id.toString(QUuid::WithoutBraces));
        row->setUnread(!message.read);
        row->onClick = [this, id = message.id] { onOpen(id); };
        column_->addWidget(row);
    }
    column_->addStretch();
}

QList<MenuRow *> InboxPage::rows() const
{
    return list_->findChildren<MenuRow *>();
}

QString InboxPage::emptyText() const
{
    const auto *note = list_->findChild<QLabel *>(u"empty"_s);
    return note ? note->text() : QString();
}
