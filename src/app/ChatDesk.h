#pragma once

// The student's conversation with the model and the small operations around the feed: the
// running and final summary, dated events on show and into the calendar, the notes folder, the
// word book and the about box. Both feeds (panel and chat window) show the same.
//
// Main thread only; the model's reply comes back there. One chat call at a time.

#include "app/AppState.h"
#include "app/AppWindows.h"
#include "text/Clock.h"

#include <QObject>

class ChatDesk final
{
public:
    ChatDesk(AppWindows &windows, AppState &state, const Text::Clock &clock);

    void chat(const QString &text, const QList<Attachment> &attachments);
    void showSummary(const QString &text, bool final);
    void showEvent(const ClassEvent &event);
    void addToCalendar(const QString &id);
    void openNotes();
    void openWordBook();
    void showAbout();
    // Both feeds at once.
    void note(const QString &text);

private:
    void feeds(const std::function<void(FeedSurface &)> &show);

    AppWindows &windows_;
    AppState &state_;
    const Text::Clock &clock_;
    QObject context_;   // the chat reply's context: none arrives after the desk is gone
};
