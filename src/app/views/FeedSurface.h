#pragma once

// The AI side of a window as the coordinator sees it: notes, cards, the running summary, the
// vocabulary, dated events and the chat. The panel and the chat window show one and the same
// feed, so both implement it. Main thread only.

#include "ai/Attachment.h"
#include "engine/ClassEvent.h"

#include <QList>
#include <QString>
#include <QStringList>

class FeedSurface
{
public:
    FeedSurface() = default;
    virtual ~FeedSurface() = default;
    FeedSurface(const FeedSurface &) = delete;
    FeedSurface &operator=(const FeedSurface &) = delete;
    FeedSurface(FeedSurface &&) = delete;
    FeedSurface &operator=(FeedSurface &&) = delete;

    virtual void addNote(const QString &text) = 0;
    // A card of a kind (its title), with the local time "HH:mm" it came.
    virtual void addCard(const QString &kind, const QString &text, const QString &time) = 0;
    virtual void setSummary(const QString &text, const QString &stamp, bool final) = 0;
    // Entries [term, meaning, note], newest first.
    virtual void setVocabulary(const QList<QStringList> &terms) = 0;
    virtual void addEvent(const QString &id, const ClassEvent &event) = 0;
    virtual void markEventAdded(const QString &id) = 0;
    // The student's own message as sent, and the model's reply.
    virtual void showYou(const QString &text, const QList<Attachment> &attachments) = 0;
    virtual void addReply(const QString &text) = 0;
};
