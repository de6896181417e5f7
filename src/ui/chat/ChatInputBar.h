#pragma once

// The chat line at the bottom of the panel and the chat window: a rounded field holding the
// paperclip, the text and the send button, and the files waiting to go with the next message.
// Return and the send button send; the file dialog and drops (which the window routes here)
// attach. How the waiting files are shown is the window's own. Main thread only.

#include "ui/chat/ChatFiles.h"

#include <QWidget>

#include <functional>

class IconButton;
class QLineEdit;

class ChatInputBar final : public QWidget
{
    Q_OBJECT

public:
    ChatInputBar(const QString &paperclipDescription, int sendSize, QWidget *parent = nullptr);

    QLineEdit *field() const { return field_; }
    void setPlaceholder(const QString &text);
    const ChatFiles &files() const { return files_; }

    void attach(const QStringList &paths);
    void send();
    void removeFile(qsizetype index);
    void removeFiles();
    // A file dialog on the window, for several files of the kinds a chat takes.
    void pickFiles();

    std::function<void(const QString &text, const QList<Attachment> &attachments)> onSend =
        [](const QString &, const QList<Attachment> &) {};
    std::function<void(const QString &path)> onSlidesFile = [](const QString &) {};
    std::function<void(const QString &note)> onNote = [](const QString &) {};
    std::function<void()> onFilesChanged = [] {};

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QLineEdit *field_;
    IconButton *paperclip_;
    IconButton *send_;
    ChatFiles files_;
};
