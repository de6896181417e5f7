#include "ui/account/MessagePage.h"

#include "account/Account.h"
#include "report/CalendarExport.h"
#include "report/Inbox.h"
#include "report/MindMapImage.h"
#include "report/ReportMail.h"
#include "text/AtomicFile.h"
#include "ui/account/AccountLook.h"
#include "ui/account/ClickImage.h"
#include "ui/account/InboxPage.h"
#include "ui/account/PageTitle.h"
#include "ui/account/Scroller.h"

#include <QDesktopServices>
#include <QDir>
#include <QHBoxLayout>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;
using Tone = ToneLabel::Tone;

namespace {

constexpr int bodyHeight = 380;

ToneLabel *bodyText(const QString &text, double pixels, Tone tone, QWidget *parent)
{
    auto *label = AccountLook::label(text, pixels, tone, parent);
    label->setFixedWidth(AccountLook::textWidth);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QString eventText(const ClassEvent &event)
{
    QString text = event.date;
    if (event.time)
        text += u' ' + *event.time;
    return text + u"  " + event.title;
}

void openPicture(const QByteArray &png)
{
    const QString path = QDir::temp().filePath(u"Quillet-思维导图.png"_s);
    Text::AtomicFile::write(path, png);
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

} // namespace

MessagePage::MessagePage(QWidget *parent)
    : QWidget(parent)
    , drawMindMap(MindMapImage::png)
    , title_(new PageTitle(u"消息中心"_s, this))
    , body_(new QWidget)
    , column_(new QVBoxLayout(body_))
    , resend_(AccountLook::plainButton(u"发到邮箱"_s, this))
    , delete_(AccountLook::plainButton(u"删除"_s, this))
{
    column_->setContentsMargins(4, 0, 4, 8);
    column_->setSpacing(8);
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(10);
    buttons->addStretch();
    buttons->addWidget(resend_);
    buttons->addWidget(delete_);
    buttons->addStretch();
    auto *page = new QVBoxLayout(this);
    page->setContentsMargins(0, 0, 0, 0);
    page->setSpacing(10);
    page->addWidget(title_, 0, Qt::AlignHCenter);
    page->addWidget(new Scroller(body_, bodyHeight, this), 0, Qt::AlignHCenter);
    page->addLayout(buttons);
    connect(resend_, &QPushButton::clicked, this, &MessagePage::resendMessage);
    connect(delete_, &QPushButton::clicked, this, &MessagePage::deleteMessage);
}

void MessagePage::clearBody()
{
    while (QLayoutItem *item = column_->takeAt(0)) {
        if (QWidget *widget = item->widget()) {
            widget->setParent(nullptr);
            widget->deleteLater();
        }
        delete item->layout();
        delete item;
    }
    meta_ = nullptr;
    mindMap_ = nullptr;
    calendarButtons_.clear();
}

void MessagePage::display(const InboxMessage &message)
{
    shown_ = message;
    clearBody();
    auto *heading = bodyText(message.title, 15, Tone::text, body_);
    heading->setFont(AccountLook::font(15, QFont::DemiBold));
    column_->addWidget(heading);
    meta_ = bodyText(metaText(message), 11, Tone::secondary, body_);
    column_->addWidget(meta_);
    addEvents(message);
    addHeading(u"📝 课堂笔记（已与文字稿核对）"_s);
    column_->addWidget(bodyText(QString(message.report.notes).remove(u"**"_s), 12.5, Tone::text, body_));
    if (message.report.mindmap)
        addMindMap(*message.report.mindmap);
    column_->addStretch();
}

QString MessagePage::metaText(const InboxMessage &message) const
{
    return InboxPage::dateText(message.date) + (message.emailed ? u" · 已发到邮箱"_s : QString());
}

void MessagePage::addHeading(const QString &text)
{
    column_->addSpacing(6);
    auto *heading = bodyText(text, 13, Tone::text, body_);
    heading->setFont(AccountLook::font(13, QFont::DemiBold));
    column_->addWidget(heading);
}

void MessagePage::addEvents(const InboxMessage &message)
{
    if (message.report.events.isEmpty())
        return;
    addHeading(u"📅 重要日期"_s);
    for (int i = 0; i < message.report.events.size(); ++i) {
        auto *row = new QWidget(body_);
        auto *line = new QHBoxLayout(row);
        line->setContentsMargins(0, 0, 0, 0);
        line->setSpacing(8);
        auto *text = AccountLook::label(eventText(message.report.events[i]), 12.5, Tone::text, row);
        text->setTextInteractionFlags(Qt::TextSelectableByMouse);
        auto *add = AccountLook::linkButton(u"＋ 日历"_s, row);
        add->setFont(AccountLook::font(12));
        connect(add, &QPushButton::clicked, this, [this, i] { addEventToCalendar(i); });
        line->addWidget(text, 1);
        line->addWidget(add, 0, Qt::AlignTop);
        row->setFixedWidth(AccountLook::textWidth);
        column_->addWidget(row);
        calendarButtons_.append(add);
    }
}

void MessagePage::addMindMap(const MindNode &root)
{
    const std::optional<QByteArray> png = drawMindMap(root);
    const QImage image = png ? QImage::fromData(*png, "PNG") : QImage();
    if (image.isNull())
        return;
    addHeading(u"🧠 思维导图"_s);
    mindMap_ = new ClickImage(image, AccountLook::textWidth, body_);
    mindMap_->setToolTip(u"点击放大"_s);
    mindMap_->onClick = [bytes = *png] { openPicture(bytes); };
    column_->addWidget(mindMap_);
}

QStringList MessagePage::texts() const
{
    QStringList texts;
    for (const QLabel *label : body_->findChildren<QLabel *>())
        if (!label->text().isEmpty())
            texts.append(label->text());
    return texts;
}

void MessagePage::addEventToCalendar(int index)
{
    if (!shown_ || index < 0 || index >= shown_->report.events.size() || index >= calendarButtons_.size())
        return;
    CalendarExport::add(shown_->report.events[index], shown_->title);
    QPushButton *button = calendarButtons_[index];
    button->setText(u"✓ 已加入"_s);
    button->setEnabled(false);
}

void MessagePage::resendMessage()
{
    if (!shown_)
        return;
    onSay(u"正在发送…"_s, Tone::secondary);
    const QUuid id = shown_->id;
    ReportMail::send(shown_->title, shown_->date, shown_->report, this, [this, id](const ReportMail::Outcome &failure) {
        if (failure)
            return onSay(*failure, Tone::error);
        const QList<InboxMessage> messages = Inbox::all();
        const auto stored = std::find_if(messages.cbegin(), messages.cend(),
                                         [&](const InboxMessage &message) { return message.id == id; });
        if (stored != messages.cend()) {
            InboxMessage mailed = *stored;
            mailed.emailed = true;
            Inbox::update(mailed);
            if (shown_ && shown_->id == id) {
                shown_ = mailed;
                if (meta_)
                    meta_->setText(metaText(mailed));
            }
        }
        onSay(u"已发到 " + Account::email().value_or(u"你的邮箱"_s) + u"。", Tone::secondary);
    });
}

void MessagePage::deleteMessage()
{
    if (!shown_)
        return;
    Inbox::remove(shown_->id);
    shown_.reset();
    onDeleted();
}
