#pragma once

// Keeps the slides on the page the teacher is talking about, without any widget: it hears the
// finished caption lines, asks a model every 12 seconds which page they match, and decides from
// the replies whether to turn the page or only suggest it.
//
// Main thread only. The owner tells it the page texts and the switch, and answers which page is
// shown; it answers through onTurn / onSuggest. The model call runs on the network pool; its reply
// is dropped when the follower is gone by then. Ticks come from the Schedule it is given (Qt's
// single-shot timers in the application, a manual clock in tests).

#include "ai/AIProvider.h"
#include "text/Schedule.h"

#include <QObject>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class SlideFollower final
{
public:
    static constexpr std::chrono::milliseconds tick{12000};
    // Caption lines kept for the question.
    static constexpr qsizetype keptLines = 14;
    // A page with fewer characters counts as a picture.
    static constexpr qsizetype textualPage = 5;
    static constexpr qsizetype offeredChars = 160;
    static constexpr int pagesBefore = 3;
    static constexpr int pagesAfter = 8;

    explicit SlideFollower(Text::Schedule schedule = Text::mainThreadSchedule());
    ~SlideFollower();
    SlideFollower(const SlideFollower &) = delete;
    SlideFollower &operator=(const SlideFollower &) = delete;
    SlideFollower(SlideFollower &&) = delete;
    SlideFollower &operator=(SlideFollower &&) = delete;

    // The model to ask, made afresh for each question; none means nothing is asked.
    std::function<std::shared_ptr<const AIProvider>()> makeProvider = [] { return nullptr; };
    // The 0-based page on show (0 without a document).
    std::function<int()> currentPage = [] { return 0; };
    // Go to this 0-based page (the switch is on).
    std::function<void(int page)> onTurn = [](int) {};
    // Offer this 0-based page to the student (the switch is off).
    std::function<void(int page)> onSuggest = [](int) {};

    // A new deck: the plain text of each page. Forgets the last guess and the suggestion.
    void setPages(const QStringList &texts);
    const QStringList &pages() const { return pages_; }
    // No page has enough text to match speech against.
    bool onlyPictures() const;

    void heard(const QString &line);
    // Stops the ticks and forgets the heard lines; the guess and the suggestion stay.
    void stopFollowing();
    bool following() const { return timer_ != nullptr; }
    // A question is on its way to the model.
    bool asking() const { return busy_; }

    // Turning it on with a suggestion waiting goes there at once.
    void setAutoFlip(bool on);
    bool autoFlip() const { return autoFlip_; }

    std::optional<int> suggested() const { return suggested_; }
    // The student is now on `page`; true when that was the suggestion, which is then done.
    bool pageChanged(int page);

    // Text split at white space and line ends, joined with single blanks.
    static QString cleaned(const QString &text);
    // The question for the model, offering the pages around `current`.
    static QString question(const QStringList &pages, const QStringList &heard, int current);

private:
    void schedule();
    void follow();
    void read(const std::optional<QString> &reply);

    Text::Schedule schedule_;
    QObject replies_;  // the context replies come back on; gone with the follower
    QStringList pages_;
    QStringList heardLines_;
    int newLines_ = 0;
    bool busy_ = false;
    bool autoFlip_ = false;
    std::optional<int> lastGuess_;
    std::optional<int> suggested_;
    // Alive while following; a tick whose token has gone does nothing.
    std::shared_ptr<int> timer_;
};
