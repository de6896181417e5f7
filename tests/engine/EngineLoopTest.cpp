#include "EngineFixture.h"
#include "EventLoop.h"

#include <chrono>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString recording = u"● 正在录音"_s;
const QString translating = u"● 正在录音 · 翻译中"_s;

} // namespace

TEST_F(EngineTest, SoundSourceReportsStatusDraftsAndLinesAndTheTranscriptIsCutByCharacters)
{
    startWith(micConfig());
    source->setDraft(u"the entropy of"_s);
    pass();
    pass({u"Good morning everyone."_s});
    source->setDraft(u"the entropy of a system"_s);
    pass({u"Today we look at entropy."_s});
    source->setDraft(QString());
    pass();
    pass();
    source->setProblem(u"麦克风没有声音"_s);
    pass();
    pass();
    source->setProblem(std::nullopt);
    pass({u"Where were we."_s});
    const Seen reported = seen();
    EXPECT_EQ(reported.statuses, QStringList({recording, recording, translating, recording, u"⚠️ 麦克风没有声音"_s,
                                              u"⚠️ 麦克风没有声音"_s, translating}));
    // A draft is shown when it changes and never enters the transcript.
    EXPECT_EQ(reported.captions, QStringList({u"the entropy of"_s, u"the entropy of a system"_s, QString()}));
    EXPECT_EQ(reported.lines, QStringList({u"Good morning everyone."_s, u"Today we look at entropy."_s,
                                           u"Where were we."_s}));
    EXPECT_EQ(engine->fullTranscript(1000), reported.lines.join(u'\n'));

    // The readers cut by lines and by characters, however many code units a character takes.
    pass({u"two 👩‍👩‍👧"_s, u"three"_s});
    EXPECT_EQ(engine->fullTranscript(9), u"o 👩‍👩‍👧\nthree"_s);
    EXPECT_EQ(engine->fullTranscript(0), QString());
    EXPECT_EQ(engine->recentTranscript(100, 2), u"two 👩‍👩‍👧\nthree"_s);
    EXPECT_EQ(engine->recentTranscript(4, 2), u"hree"_s);
    EXPECT_EQ(engine->recentTranscript(100, 0), QString());
    const QString accented = QString(u"e\u0301"_s).repeated(4);
    pass({u"ab"_s, accented});
    EXPECT_EQ(engine->fullTranscript(6), u"b\n"_s + accented);
    EXPECT_EQ(engine->recentTranscript(3, 1), QString(u"e\u0301"_s).repeated(3));
    // Sixty lines unless told otherwise.
    pass(QStringList(60, u"later"_s));
    EXPECT_EQ(engine->recentTranscript(1000), QStringList(60, u"later"_s).join(u'\n'));
}

TEST_F(EngineTest, BadLinesAndRepliesBreakNothingAndDeliverNothingTheRulesRefuse)
{
    Config config = micConfig();
    config.recordVocabulary = true;
    startWith(config);
    const QString longQuestion = QString(10000, u'가') + u'?';
    const QString digits = u"Chapter "_s + QString(10000, u'7');
    const QString letters = QString(10000, u'x');
    pass({u"  \tThe same line.\t "_s, u"The same line."_s, u"!!! ???"_s, u"1234 5678?"_s, u"😀😀😀?"_s,
          u"#1 What is this?"_s, u"At 10:30 what happens?"_s, u"Hello 世界 مرحبا?"_s, longQuestion, digits,
          letters});
    // A sound source takes every line with a letter, trimmed, the same line twice too.
    EXPECT_EQ(seen().lines, QStringList({u"The same line."_s, u"The same line."_s, u"#1 What is this?"_s,
                                         u"At 10:30 what happens?"_s, u"Hello 世界 مرحبا?"_s, longQuestion,
                                         digits, letters}));
    // Debris and clock times are no questions; nothing here is a notice.
    pass({u"Go on."_s}, 1s);
    const auto questions = callsContaining(u"may be questions"_s);
    ASSERT_EQ(questions.size(), 1);
    EXPECT_TRUE(questions[0].prompt().contains(u"<sentences>\nHello 世界 مرحبا?\n"_s + longQuestion
                                                + u"\n</sentences>"_s));
    EXPECT_TRUE(callsContaining(u"exam/homework/schedule keyword"_s).isEmpty());

    // Replies that aren't the list asked for give no event and no term; one bad entry spoils the list.
    std::optional<QString> reply;
    fake->setHandler([&](const FakeProvider::Call &) { return reply; });
    const QList<std::optional<QString>> unusable{
        u"No dates were announced."_s,
        std::nullopt,
        u"（无法连接 Fake）"_s,
        uR"(] [{"title": "Quiz", "date": "2026-03-10", "term": "Heat"})"_s,
        uR"({"title": "Quiz", "date": "2026-03-10", "term": "Heat", "meaning": "热"})"_s,
        uR"(["2026-03-10", "Heat"])"_s,
        uR"([{"title": "Quiz", "date": "2026-03-10"}, {"title": 3, "date": "2026-03-17"}])"_s,
        uR"([{"term": "Heat", "meaning": "热"}, "Cold"])"_s};
    for (int i = 0; i < int(unusable.size()); ++i) {
        reply = unusable[i];
        QStringList lines(5, u"Filler line."_s);
        pass(lines << u"Homework %1 is due."_s.arg(QChar(u'A' + i)));
        pass({u"Fine."_s}, 2s);
    }
    EXPECT_EQ(callsContaining(u"Sentences that may announce a date"_s).size(), unusable.size());
    EXPECT_EQ(callsContaining(u"Pick out only the difficult"_s).size(), 1 + unusable.size());
    EXPECT_TRUE(seen().events.isEmpty());
    EXPECT_TRUE(seen().terms.isEmpty());
}

TEST_F(EngineTest, WindowSourceKeepsTheFirstScreenQuietAndDropsRepeats)
{
    make(windowConfig(), nullptr, fake);
    const QString asked = u"엔트로피가 무엇인지 아는 사람 있어요?"_s;
    source->show(asked + u"\n2024 12:30 !!"_s);
    start();
    EXPECT_EQ(engine->fullTranscript(1000), asked);
    EXPECT_TRUE(seen().lines.isEmpty());

    // The same screen again brings nothing new. A line of 40 % Hangul fails, 50 % passes; 60 % is too
    // little to be examined for questions and notices; a key of five Hangul letters is refused.
    pass({}, 1500ms);
    source->show(asked + u"\n사아자차카타 abcdefghi\n가나다라마바 abcdef\n짧은 말이다\n시험 날짜가 언제예요 finals?"_s);
    pass({}, 1500ms);
    // Asked again after the first screen, the question is still known.
    source->show(u"다시 한번 물어볼게요\n"_s + asked);
    pass({}, 1500ms);
    pass({}, 10s);
    EXPECT_TRUE(fake->calls().isEmpty());
    EXPECT_EQ(seen().lines,
              QStringList({u"가나다라마바 abcdef"_s, u"시험 날짜가 언제예요 finals?"_s, u"다시 한번 물어볼게요"_s}));
    EXPECT_EQ(engine->fullTranscript(1000), QStringList({asked, seen().lines.join(u'\n')}).join(u'\n'));

    // Nothing readable: one warning per idle stretch, a problem on every idle pass.
    source->show(u"Hello 世界 مرحبا"_s);
    pass({}, 1500ms);
    pass({}, 1500ms);
    source->setProblem(u"找不到 Zoom 的窗口"_s);
    pass({}, 1500ms);
    pass({}, 1500ms);
    EXPECT_EQ(seen().statuses, QStringList({recording, translating, u"⚠️ 读不到 Zoom 的字幕"_s,
                                            u"⚠️ 找不到 Zoom 的窗口"_s, u"⚠️ 找不到 Zoom 的窗口"_s}));
}

TEST_F(EngineTest, StopEndsTheLoopAtOnceAndStopsTheSourceOnce)
{
    startWith(micConfig());
    const auto before = std::chrono::steady_clock::now();
    engine->stop();  // the loop sleeps on a clock that never moves by itself
    EXPECT_LT(std::chrono::steady_clock::now() - before, 1s);
    EXPECT_EQ(source->stops(), 1);
    EXPECT_NE(source->stopThread(), std::this_thread::get_id());
    const int reads = source->reads();
    clock->advance(10s);
    engine->start();  // a stopped engine isn't started again
    engine->stop();
    EXPECT_EQ(source->reads(), reads);
    EXPECT_EQ(source->starts(), 1);
    EXPECT_EQ(source->stops(), 1);
    const int statuses = int(seen().statuses.size());

    // Never started, it still stops its source, once.
    make(micConfig(), nullptr, fake);
    engine->stop();
    engine->stop();
    EXPECT_EQ(source->stops(), 1);
    EXPECT_EQ(source->starts(), 0);

    // A source that can't start gives its problem, and no loop runs.
    make(micConfig(), nullptr, fake);
    source->setStartProblem(u"没有麦克风权限"_s);
    engine->start();
    EXPECT_TRUE(runEventsUntil([&] { return seen().statuses.size() == statuses + 2; }));
    engine->stop();
    EXPECT_EQ(seen().statuses.mid(statuses), QStringList({recording, u"⚠️ 没有麦克风权限"_s}));
    EXPECT_EQ(source->reads(), 0);
    EXPECT_EQ(source->stops(), 1);
}

TEST_F(EngineTest, AStoppedEngineReportsNothingEvenWhenItsModelCallsAnswerLater)
{
    startWith(micConfig());
    fake->enqueue(u"A late answer."_s);
    fake->hold();
    step({u"What is entropy in this system?"_s});
    step({u"Think about it."_s});
    step({u"Take your time."_s});
    ASSERT_TRUE(fake->waitForCalls(1));
    const Seen before = seen();
    engine->stop();
    fake->release();
    settle();
    EXPECT_TRUE(seen().results.isEmpty());
    EXPECT_EQ(seen().statuses, before.statuses);
    EXPECT_EQ(seen().lines, before.lines);
}
