// The follower's rules without a window: which pages a question offers, which replies turn the
// page, and the 12-second cadence on a manual clock.

#include "ui/slides/SlideFollower.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "SlideFixtures.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

QStringList numberedPages(int count)
{
    QStringList pages;
    for (int n = 1; n <= count; ++n)
        pages.append(u"Page %1 topic %1"_s.arg(n));
    return pages;
}

// A follower on a deck, as a window would drive it: the page on show, turns and suggestions.
struct Lecture
{
    explicit Lecture(int pageCount, int startPage, bool autoFlip = true)
        : follower(timers.schedule())
        , shown(startPage - 1)
    {
        follower.setPages(numberedPages(pageCount));
        follower.setAutoFlip(autoFlip);
        follower.makeProvider = [this] { return provider; };
        follower.currentPage = [this] { return shown; };
        follower.onTurn = [this](int page) { moveTo(page + 1); };
        follower.onSuggest = [this](int page) { hint = page + 1; };
    }

    void moveTo(int page)
    {
        shown = page - 1;
        if (follower.pageChanged(shown))
            hint = 0;
    }

    // Two new lines, one tick, and the scripted reply read.
    void round(const QString &reply)
    {
        fake->enqueue(reply);
        follower.heard(u"line a"_s);
        follower.heard(u"line b"_s);
        timers.advance(SlideFollower::tick);
        ASSERT_TRUE(follower.asking());
        ASSERT_TRUE(runEventsUntil([this] { return !follower.asking(); }));
    }

    ManualTimers timers;
    std::shared_ptr<FakeProvider> fake = std::make_shared<FakeProvider>();
    std::shared_ptr<const AIProvider> provider = fake;
    SlideFollower follower;
    int shown;
    int hint = 0;  // 1-based page the hint offers, 0 when hidden
};

QString sure(const QString &page)
{
    return u"{\"page\": "_s + page + u", \"sure\": true}"_s;
}

} // namespace

TEST(SlideFollower, OffersThreePagesBeforeAndEightAfterTheCurrentOne)
{
    const struct
    {
        int current, count, first, last;  // 1-based
    } cases[] = {{1, 30, 1, 9}, {10, 30, 7, 18}, {29, 30, 26, 30}, {2, 3, 1, 3}};
    for (const auto &c : cases) {
        const QString question = SlideFollower::question(numberedPages(c.count), {u"hello"_s}, c.current - 1);
        for (int page = 1; page <= c.count; ++page)
            EXPECT_EQ(question.contains(u"[%1] Page %1 topic %1\n"_s.arg(page)), page >= c.first && page <= c.last)
                << "on page " << c.current << " of " << c.count << ", page " << page;
        EXPECT_TRUE(question.contains(u"The student is on page %1."_s.arg(c.current)));
    }
    const QString long_ = QString(200, u'말');
    EXPECT_TRUE(SlideFollower::question({long_, long_}, {}, 0).contains(u"[1] "_s + QString(160, u'말') + u'\n'));
}

TEST(SlideFollower, TurnsOnlyOnRepliesThatAreSureEnough)
{
    const struct
    {
        const char *name;
        int start;
        QStringList replies;  // "move N" is the student turning to page N by hand
        bool autoFlip;
        int page;  // where the student ends up
        int hint;
    } cases[] = {
        {"the next page turns at once", 5, {sure(u"6"_s)}, true, 6, 0},
        {"a far page needs the same reply twice", 5, {sure(u"20"_s)}, true, 5, 0},
        {"twice in a row turns", 5, {sure(u"20"_s), sure(u"20"_s)}, true, 20, 0},
        {"two different far pages turn nothing", 5, {sure(u"20"_s), sure(u"21"_s)}, true, 5, 0},
        {"an unsure reply keeps the last guess", 5, {sure(u"20"_s), u"{\"page\": 20, \"sure\": false}"_s, sure(u"20"_s)}, true, 20, 0},
        {"the current page, then moved away", 5, {sure(u"5"_s), u"move 9"_s, sure(u"5"_s)}, true, 5, 0},
        {"7.0 is page 7", 6, {sure(u"7.0"_s)}, true, 7, 0},
        {"\"7\" is not a number", 6, {sure(u"\"7\""_s)}, true, 6, 0},
        {"page 0", 1, {sure(u"0"_s), sure(u"0"_s)}, true, 1, 0},
        {"beyond the deck", 29, {sure(u"31"_s), sure(u"31"_s)}, true, 29, 0},
        {"a code fence around the JSON", 2, {u"```json\n{\"page\": 3, \"sure\": true}\n```"_s}, true, 3, 0},
        {"not a page number at all", 2, {u"I think the teacher is on the third slide."_s}, true, 2, 0},
        {"a failed chat", 2, {u"（网络连接失败）{\"page\": 3, \"sure\": true}"_s}, true, 2, 0},
        {"switch off: only a hint", 2, {sure(u"3"_s)}, false, 2, 3},
        {"switch off: the student follows the hint", 2, {sure(u"3"_s), u"move 3"_s}, false, 3, 0},
    };
    for (const auto &c : cases) {
        Lecture lecture(30, c.start, c.autoFlip);
        for (const QString &reply : c.replies) {
            if (reply.startsWith(u"move "))
                lecture.moveTo(reply.mid(5).toInt());
            else
                lecture.round(reply);
        }
        EXPECT_EQ(lecture.shown + 1, c.page) << c.name;
        EXPECT_EQ(lecture.hint, c.hint) << c.name;
    }
}

TEST(SlideFollower, TurningTheSwitchOnGoesToTheWaitingSuggestion)
{
    Lecture lecture(10, 2, false);
    lecture.round(sure(u"3"_s));
    ASSERT_EQ(lecture.hint, 3);
    lecture.follower.setAutoFlip(true);
    EXPECT_EQ(lecture.shown + 1, 3);
    EXPECT_EQ(lecture.hint, 0);
    EXPECT_FALSE(lecture.follower.suggested());
}

TEST(SlideFollower, AsksEveryTwelveSecondsOnlyAfterTwoNewLines)
{
    Lecture lecture(10, 1);
    FakeProvider &fake = *lecture.fake;
    lecture.follower.heard(u"one"_s);
    lecture.timers.advance(SlideFollower::tick);
    EXPECT_TRUE(fake.calls().isEmpty()) << "one new line is too quiet";
    lecture.follower.heard(u"two"_s);
    lecture.timers.advance(SlideFollower::tick - 1ms);
    EXPECT_TRUE(fake.calls().isEmpty());
    fake.hold();
    lecture.timers.advance(1ms);
    ASSERT_TRUE(fake.waitForCalls(1));

    // Ticks during a question return at once, while the new lines go on counting.
    for (int i = 3; i <= 16; ++i)
        lecture.follower.heard(u"line %1"_s.arg(i));
    lecture.timers.advance(3 * SlideFollower::tick);
    EXPECT_EQ(fake.calls().size(), 1);
    fake.release();
    ASSERT_TRUE(runEventsUntil([&] { return !lecture.follower.asking(); }));
    lecture.timers.advance(SlideFollower::tick);
    ASSERT_TRUE(fake.waitForCalls(2));
    const FakeProvider::Call second = fake.calls().at(1);
    EXPECT_EQ(second.system, u"You match lecture speech to slide pages. Reply with JSON only."_s);
    EXPECT_EQ(second.turns.size(), 1);
    EXPECT_EQ(second.turns.first().role, u"user"_s);
    EXPECT_TRUE(second.prompt().contains(u"<speech>\nline 3\n"_s)) << "14 lines kept: one, two and the first lost";
    EXPECT_FALSE(second.prompt().contains(u"\ntwo\n"_s));
    ASSERT_TRUE(runEventsUntil([&] { return !lecture.follower.asking(); }));

    // Stopped, nothing ticks; the next heard line starts afresh.
    lecture.follower.stopFollowing();
    EXPECT_FALSE(lecture.follower.following());
    lecture.follower.heard(u"after"_s);
    lecture.follower.heard(u"the break"_s);
    lecture.timers.advance(SlideFollower::tick);
    ASSERT_TRUE(fake.waitForCalls(3));
    EXPECT_TRUE(fake.calls().at(2).prompt().contains(u"<speech>\nafter\nthe break\n</speech>"_s));
    ASSERT_TRUE(runEventsUntil([&] { return !lecture.follower.asking(); }));
}

TEST(SlideFollower, AsksNothingWithoutAModelOrWithoutText)
{
    Lecture lecture(10, 1);
    lecture.provider = nullptr;
    lecture.follower.heard(u"one"_s);
    lecture.follower.heard(u"two"_s);
    lecture.timers.advance(SlideFollower::tick);
    EXPECT_FALSE(lecture.follower.asking());
    // The lines heard while no model was there still count once one is.
    lecture.provider = lecture.fake;
    lecture.timers.advance(SlideFollower::tick);
    EXPECT_TRUE(lecture.fake->waitForCalls(1));
    ASSERT_TRUE(runEventsUntil([&] { return !lecture.follower.asking(); }));

    Lecture pictures(10, 1);
    pictures.follower.setPages({u"图 1"_s, u"  Fig\n "_s, QString()});
    EXPECT_TRUE(pictures.follower.onlyPictures());
    for (int i = 0; i < 6; ++i)
        pictures.follower.heard(u"line"_s);
    pictures.timers.advance(3 * SlideFollower::tick);
    EXPECT_TRUE(pictures.fake->calls().isEmpty());
    EXPECT_EQ(SlideFollower::cleaned(u"  Fig\n2\t\u3000x "_s), u"Fig 2 x"_s);
}
