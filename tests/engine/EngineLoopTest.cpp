#include "EngineFixture.h"

#include <chrono>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString recording = u"● 正在录音"_s;
const QString translating = u"● 正在录音 · 翻译中"_s;

} // namespace

TEST_F(EngineTest, StatusFollowsTheFlowOfLines)
{
    startWith(micConfig());
    pass();
    pass({u"Good morning everyone."_s});
    pass({u"Today we look at entropy."_s});
    pass();
    pass();
    source->setProblem(u"麦克风没有声音"_s);
    pass();
    pass();
    source->setProblem(std::nullopt);
    pass({u"Where were we."_s});
    EXPECT_EQ(seen.statuses(), QStringList({recording, recording, translating, recording, u"⚠️ 麦克风没有声音"_s,
                                            u"⚠️ 麦克风没有声音"_s, translating}));
    EXPECT_EQ(seen.lines(), QStringList({u"Good morning everyone."_s, u"Today we look at entropy."_s,
                                         u"Where were we."_s}));
}

TEST_F(EngineTest, SoundSourceTakesEveryLineWithLetters)
{
    startWith(micConfig());
    const QString longLine = QString(10000, u'가');
    pass({u"  \tThe same line.\t "_s, u"The same line."_s, u"!!! ???"_s, u"1234 5678"_s, u"😀😀😀"_s,
          u"Hello 世界 مرحبا"_s, longLine});
    EXPECT_EQ(seen.lines(), QStringList({u"The same line."_s, u"The same line."_s, u"Hello 世界 مرحبا"_s, longLine}));
    EXPECT_EQ(engine->fullTranscript(30), QString(30, u'가'));
    EXPECT_EQ(engine->fullTranscript(10015), u"Hello 世界 مرحبا\n"_s + longLine);
    EXPECT_EQ(engine->ratio(u"mixed 한글"_s), 1.0);
    EXPECT_EQ(engine->ratio(u"123"_s), 0.0);
}

TEST_F(EngineTest, WindowSourceKeepsTheFirstScreenQuietAndDropsRepeats)
{
    make(windowConfig(), nullptr, fake);
    const QString first = u"안녕하세요 여러분 오늘은 엔트로피를 배웁니다"_s;
    source->show(first + u"\n2024 12:30 !!"_s);
    start();
    EXPECT_EQ(engine->fullTranscript(1000), first);
    EXPECT_TRUE(seen.lines().isEmpty());

    // The window still shows the same text: nothing new. A line of 40 % Hangul fails, 50 % passes; a
    // key under six Hangul letters can't tell lines apart and is refused.
    pass({}, 1500ms);
    source->show(first + u"\n가나다라 abcdef\n가나다라마바 abcdef\n짧은 말\n새로운 내용이 나왔습니다"_s);
    pass({}, 1500ms);
    EXPECT_EQ(seen.lines(), QStringList({u"가나다라마바 abcdef"_s, u"새로운 내용이 나왔습니다"_s}));
    EXPECT_EQ(engine->fullTranscript(1000), first + u"\n가나다라마바 abcdef\n새로운 내용이 나왔습니다"_s);

    // Nothing readable: one warning per idle stretch, a problem on every idle pass.
    source->show(u"Hello 世界 مرحبا"_s);
    pass({}, 1500ms);
    pass({}, 1500ms);
    source->setProblem(u"找不到 Zoom 的窗口"_s);
    pass({}, 1500ms);
    pass({}, 1500ms);
    EXPECT_EQ(seen.statuses(), QStringList({u"● 正在录音"_s, u"● 正在录音 · 翻译中"_s, u"⚠️ 读不到 Zoom 的字幕"_s,
                                            u"⚠️ 找不到 Zoom 的窗口"_s, u"⚠️ 找不到 Zoom 的窗口"_s}));
}

TEST_F(EngineTest, DraftsAreReportedWhenTheyChange)
{
    startWith(micConfig());
    source->setDraft(u"the entropy of"_s);
    pass();
    pass();
    source->setDraft(u"the entropy of a system"_s);
    pass();
    source->setDraft(QString());
    pass();
    EXPECT_EQ(seen.captions(), QStringList({u"the entropy of"_s, u"the entropy of a system"_s, QString()}));
    EXPECT_TRUE(engine->fullTranscript(100).isEmpty());
}

TEST_F(EngineTest, TranscriptReadersCutByLinesAndCharacters)
{
    startWith(micConfig());
    pass({u"one"_s, u"two 👩‍👩‍👧"_s, u"three"_s});
    EXPECT_EQ(engine->fullTranscript(100), u"one\ntwo 👩‍👩‍👧\nthree"_s);
    EXPECT_EQ(engine->fullTranscript(9), u"o 👩‍👩‍👧\nthree"_s);
    EXPECT_EQ(engine->fullTranscript(0), QString());
    EXPECT_EQ(engine->recentTranscript(100, 2), u"two 👩‍👩‍👧\nthree"_s);
    EXPECT_EQ(engine->recentTranscript(4, 2), u"hree"_s);
    EXPECT_EQ(engine->recentTranscript(100, 0), QString());
    EXPECT_EQ(engine->recentTranscript(100), u"one\ntwo 👩‍👩‍👧\nthree"_s);
    EXPECT_EQ(engine->currentSummary(), QString());

    // Characters of several code units each: the cut still counts characters.
    const QString accented = QString(u"e\u0301"_s).repeated(4);
    pass({u"ab"_s, accented});
    EXPECT_EQ(engine->fullTranscript(6), u"b\n"_s + accented);
    EXPECT_EQ(engine->recentTranscript(3, 1), QString(u"e\u0301"_s).repeated(3));
}

TEST_F(EngineTest, StopEndsTheLoopAtOnceAndStopsTheSourceOnTheLoopThread)
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
}

TEST_F(EngineTest, SourceThatCannotStartGivesItsProblemAndNoLoop)
{
    make(micConfig(), nullptr, fake);
    source->setStartProblem(u"没有麦克风权限"_s);
    engine->start();
    ASSERT_TRUE(seen.waitFor([&] { return seen.statuses().size() == 2; }));
    EXPECT_EQ(seen.statuses(), QStringList({u"● 正在录音"_s, u"⚠️ 没有麦克风权限"_s}));
    engine->stop();
    EXPECT_EQ(source->reads(), 0);
    EXPECT_EQ(source->stops(), 1);
}

TEST_F(EngineTest, EngineNeverStartedStillStopsItsSourceOnce)
{
    make(micConfig(), nullptr, fake);
    engine->stop();
    engine->stop();
    EXPECT_EQ(source->stops(), 1);
    EXPECT_EQ(source->starts(), 0);
    EXPECT_TRUE(seen.statuses().isEmpty());
}
