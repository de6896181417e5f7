#pragma once

// The files waiting to go with the next chat message, shared in rule by the panel and the chat
// window: what a drop or the file dialog attaches, what goes to the slide window instead, and the
// message a press of send makes. Main thread only.

#include "ai/Attachment.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class ChatFiles final
{
public:
    struct Outcome
    {
        std::optional<QString> slides; // the first file that belongs in the slide window
        QStringList notes;             // one worded reason for each file that couldn't be attached
    };
    struct Message
    {
        QString text;
        QList<Attachment> attachments;
    };

    // Presentations go to the slide window only; a PDF is both opened there and attached.
    Outcome attach(const QStringList &paths);
    const QList<Attachment> &attachments() const { return attachments_; }
    // Out-of-range indexes are ignored.
    void remove(qsizetype index);
    void clear() { attachments_.clear(); }
    // The message for what the student typed, taking the files out; none when there is nothing.
    std::optional<Message> take(const QString &typed);

    // The file dialog's filter: PDF, images, plain text, JSON, CSV and HTML.
    static QString dialogFilter();
    // One chip's or label's text for a waiting file.
    static QString label(const Attachment &attachment);

private:
    QList<Attachment> attachments_;
};
