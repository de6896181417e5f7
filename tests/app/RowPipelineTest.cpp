#include "app/RowPipeline.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "FakeWindows.h"
#include "LocalServices.h"
#include "QtPrinters.h"
#include "engine/Corrector.h"
#include "platform/Http.h"
#include "translation/Translator.h"

#include <QThreadPool>

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// Rows over the local translation server, on a clock the test moves; each view logs what it was told.
class RowPipelineTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        serveTranslations(server);
        translator.setLanguages({u"en-US"_s}, u"zh-Hans"_s);
    }
    void advance(std::chrono::milliseconds by) { timers.advance(by); }
    // Lets the translations that were asked for arrive: the lanes work on the network pool and
    // hand their results to the main thread, which may ask again.
    void translate()
    {
        for (int round = 0; round < 2; ++round) {
            Http::taskPool().waitForDone();
            runEventsFor(20ms);
        }
    }

    TestServer server;
    Translator translator;
    ManualClock clock;
    DueTasks timers{clock, {}};
    WindowLog seen;
    WindowLog barSeen;
    FakeTranscript panel{seen, u"rows"_s};
    FakeTranscript bar{barSeen, u"rows"_s};
    RowPipeline rows{panel, bar, translator, clock, timers.scheduler()};
};

TEST_F(RowPipelineTest, LinesJoinWithinTheBoundsOfTheRowsFirstLine)
{
    struct Case
    {
        QStringList lines;   // each 2.6 s after the one before, the last `last` after its predecessor
        std::chrono::milliseconds last;
        bool lastJoins;
    };
    const QString hundred(100, u'a');
    const QList<Case> cases{
        {{hundred, QString(59, u'b')}, 1s, true},   // 159 characters
        {{hundred, QString(60, u'b')}, 1s, false},  // 160
        {{u"we"_s, u"start"_s, u"with"_s, u"waves"_s}, 2700ms, true},  // 7.9 s after the first line
        {{u"we"_s, u"start"_s, u"with"_s, u"waves"_s}, 2800ms, false}, // 8.0 s
        {{u"오늘은 여기까지입니다"_s, u"다음 주에"_s}, 100ms, false},
        {{u"and so."_s, u"next"_s}, 100ms, false},
    };
    for (const Case &c : cases) {
        rows.closeRow();
        seen.entries.clear();
        for (qsizetype i = 0; i < c.lines.size(); ++i) {
            if (i > 0)
                advance(i == c.lines.size() - 1 ? c.last : 2600ms);
            rows.showLine(c.lines[i]);
        }
        EXPECT_EQ(seen.entries.last().startsWith(u"rows.text "_s), c.lastJoins) << c.lines.join(u'/').toStdString();
        EXPECT_EQ(barSeen.entries.mid(barSeen.entries.size() - seen.entries.size()), seen.entries) << "both views alike";
    }
    EXPECT_TRUE(RowPipeline::finished(u"We'll see. "_s));
    EXPECT_TRUE(RowPipeline::finished(u"そうです"_s));
    EXPECT_FALSE(RowPipeline::finished(u"and then"_s));
}

TEST_F(RowPipelineTest, ARowClosesAfterThreeQuietSecondsGoesToTheCorrectorOnceAndItsFixWins)
{
    auto model = std::make_shared<FakeProvider>();
    model->setHandler([](const FakeProvider::Call &call) -> std::optional<QString> {
        EXPECT_TRUE(call.prompt().contains(u"[\"the entropy of a gas rises\"]"_s)) << call.prompt().toStdString();
        return u"[{\"text\": \"the entropy of a gas rises\", \"translation\": \"气体的熵增加\"}]"_s;
    });
    rows.setCorrector(Corrector::make(model, u"English"_s, u"Simplified Chinese"_s));

    rows.showLine(u"the entropy"_s);
    advance(2900ms);
    rows.showLine(u"of a gas rises"_s);   // joins and starts the three seconds again
    advance(2900ms);
    EXPECT_TRUE(model->calls().isEmpty());
    translate();
    advance(100ms);
    ASSERT_TRUE(runEventsUntil([&] { return seen.entries.last() == u"rows.tr 1 气体的熵增加"_s; }));
    EXPECT_EQ(model->calls().size(), 1);
    EXPECT_EQ(seen.entries, QStringList({u"rows.add 1 the entropy"_s, u"rows.text 1 the entropy of a gas rises"_s,
                                         u"rows.tr 1 zh-Hans:the entropy of a gas rises"_s,
                                         u"rows.text 1 the entropy of a gas rises"_s, u"rows.tr 1 气体的熵增加"_s}))
        << "the first line's quick translation came after the row grew: dropped";

    // A quick translation arriving after the fix is dropped too, however well it fits.
    model->setHandler([](const FakeProvider::Call &) -> std::optional<QString> {
        return u"[{\"text\": \"Heat flows.\", \"translation\": \"热会流动。\"}]"_s;
    });
    server.setHandler([](const TestServer::Request &) {
        TestServer::Response late = TestServer::Response::json(R"({"translatedText": "zh-Hans:Heat flows."})");
        late.delay = 400ms;
        return late;
    });
    rows.showLine(u"Heat flows."_s);   // a finished sentence closes at once
    ASSERT_TRUE(runEventsUntil([&] { return seen.entries.last() == u"rows.tr 2 热会流动。"_s; }));
    runEventsFor(600ms);
    EXPECT_EQ(seen.entries.last(), u"rows.tr 2 热会流动。"_s);
}

TEST_F(RowPipelineTest, DraftSentencesAreTranslatedOnceAndAnUnfinishedOneAtMostEvery900ms)
{
    rows.showDraft(u"This is done. And this is"_s);
    translate();
    EXPECT_EQ(seen.entries.last(), u"rows.drafts This is done.|zh-Hans:This is done., And this is|zh-Hans:And this is"_s);
    rows.showDraft(u"This is done. And this is still"_s);
    advance(500ms);
    rows.showDraft(u"This is done. And this is still going"_s);
    translate();
    EXPECT_EQ(seen.entries.last(), u"rows.drafts This is done.|zh-Hans:This is done., And this is still going|"_s)
        << "asked 0.5 s after the last unfinished one: not yet";
    advance(500ms);
    rows.showDraft(u"This is done. And this is still going on"_s);
    translate();
    EXPECT_EQ(seen.entries.last(),
              u"rows.drafts This is done.|zh-Hans:This is done., And this is still going on|zh-Hans:And this is still going on"_s);
    rows.showLine(u"This is done."_s);
    rows.showDraft(u"This is done."_s);
    EXPECT_EQ(seen.entries.last(), u"rows.drafts This is done.|"_s) << "a line ends the draft's cache";
}

} // namespace
