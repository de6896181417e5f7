#pragma once

// One message of the message centre: its title and date, the dates the teacher announced (each
// with "＋ 日历"), the checked notes and the mind map, which opens full size on a click. Below the
// page, mailing the report again and deleting it. Reports through the window's message line.
//
// Main thread only. The resend request comes back here and is dropped if the page is gone. The
// picture maker is replaceable so a picture that can't be drawn can be shown to be harmless.

#include "report/InboxMessage.h"
#include "ui/common/ToneLabel.h"

#include <QWidget>

#include <functional>
#include <optional>

class ClickImage;
class PageTitle;
class QPushButton;
class QVBoxLayout;

class MessagePage final : public QWidget
{
    Q_OBJECT

public:
    explicit MessagePage(QWidget *parent = nullptr);

    void display(const InboxMessage &message);
    void addEventToCalendar(int index);
    void resendMessage();
    void deleteMessage();

    PageTitle *title() const { return title_; }
    QList<QPushButton *> calendarButtons() const { return calendarButtons_; }
    QPushButton *resendButton() const { return resend_; }
    QPushButton *deleteButton() const { return delete_; }
    // The mind map picture, when the message has one that could be drawn.
    ClickImage *mindMap() const { return mindMap_; }
    // Every text the page shows, in order, for checks of what the student reads.
    QStringList texts() const;

    std::function<std::optional<QByteArray>(const MindNode &root)> drawMindMap;
    std::function<void(const QString &text, ToneLabel::Tone tone)> onSay = [](const QString &, ToneLabel::Tone) {};
    std::function<void()> onDeleted = [] {};

private:
    void clearBody();
    void addHeading(const QString &text);
    void addEvents(const InboxMessage &message);
    void addMindMap(const MindNode &root);
    QString metaText(const InboxMessage &message) const;

    std::optional<InboxMessage> shown_;
    PageTitle *title_;
    QWidget *body_;
    QVBoxLayout *column_;
    ToneLabel *meta_ = nullptr;
    ClickImage *mindMap_ = nullptr;
    QList<QPushButton *> calendarButtons_;
    QPushButton *resend_;
    QPushButton *delete_;
};
