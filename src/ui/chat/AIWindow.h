#pragma once

// The small chat window: the same feed as the panel above a chat line, for a student who keeps
// the chat beside another application. It exists, hidden, from launch, so opening it later shows
// the whole class so far. Main thread only.

#include "app/views/ChatView.h"

#include <QWidget>

class ChatInputBar;
class FeedView;
class IconButton;
class ToneLabel;

class AIWindow final : public QWidget, public ChatView
{
    Q_OBJECT

public:
    explicit AIWindow(QWidget *parent = nullptr);

    FeedView &feed() const { return *feed_; }

    void setName(const QString &name) override;
    void toggle() override;
    void setFloating(bool floating) override;

    void addNote(const QString &text) override;
    void addCard(const QString &kind, const QString &text, const QString &time) override;
    void setSummary(const QString &text, const QString &stamp, bool final) override;
    void setVocabulary(const QList<QStringList> &terms) override;
    void addEvent(const QString &id, const ClassEvent &event) override;
    void markEventAdded(const QString &id) override;
    void showYou(const QString &text, const QList<Attachment> &attachments) override;
    void addReply(const QString &text) override;

    ChatInputBar &input() const { return *input_; }
    QString filesText() const;

protected:
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void refreshFiles();

    FeedView *feed_;
    QWidget *filesRow_;
    ToneLabel *filesLabel_;
    ChatInputBar *input_;
};
