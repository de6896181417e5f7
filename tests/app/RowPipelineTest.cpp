#include "app/RowPipeline.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "ManualClock.h"
#include "QtPrinters.h"
#include "TestServer.h"
#include "engine/Corrector.h"
#include "translation/Translator.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <gtest/gtest.h>

#include <map>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// What a transcript surface was told, one entry per call.
class RecordedSurface final : public TranscriptSurface
{
public:
    void clear(const QString &hint) override { calls << u"clear "_s + hint; }
    void addLine(int id, const QString &text) override { calls << u"add %1 %2"_s.arg(id).arg(text); }
    void setText(int id, const QString &text) override { calls << u"text %1 %2"_s.arg(id).arg(text); }
    void setTranslation(int id, const QString &text) override { calls << u"tr %1 %2"_s.arg(id).arg(text); }
    void setDrafts(const Drafts &drafts) override
    {
        QStringList shown;
        for (const auto &[text, translation] : drafts)
            shown << text + u'|' + translation;
        calls << u"drafts "_s + shown.join(u", ");
    }

    QStringList calls;
};

// Rows over a translation server that answers "zh-Hans:<text>", on a clock the test moves.
class RowPipelineTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings().setValue(u"translate.url"_s, server.url());
        server.setHandler([](const TestServer::Request &request) {
            if (request.path == "/languages")
                return TestServer::Response::json(R"([{"code": "en", "targets": ["zh-Hans"]}])");
            const QJsonObject body = QJsonDocument::fromJson(request.body).object();
            const QString text = body.value(u"target").toString() + u':' + body.value(u"q").toString();
            return TestServer::Response::json(QJsonDocument(QJsonObject{{u"translatedText"_s, text}}).toJson());
        });
        translator.setLanguages({u"en-US"_s}, u"zh-Hans"_s);
    }

    // Moves the clock and runs the timers that came due.
    void advance(std::chrono::milliseconds by)
    {
        clock.advance(by);
        while (!timers.empty() && timers.begin()->first <= clock.elapsed()) {
            auto task = std::move(timers.begin()->second);
            timers.erase(timers.begin());
            task();
        }
    }

    // Lets the translations that were asked for arrive.
    void translate() { runEventsFor(150ms); }

    TestServer server;
    Translator translator;
    ManualClock clock;
    std::multimap<Text::Clock::Duration, std::function<void()>> timers;
    RecordedSurface panel;
    RecordedSurface bar;
    RowPipeline rows{panel, bar, translator, clock, [this](std::chrono::milliseconds delay, std::function<void()> task) {
                         timers.emplace(clock.elapsed() + delay, std::move(task));
                     }};
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
        panel.calls.clear();
        for (qsizetype i = 0; i < c.lines.size(); ++i) {
            if (i > 0)
                advance(i == c.lines.size() - 1 ? c.last : 2600ms);
            rows.showLine(c.lines[i]);
        }
        EXPECT_EQ(panel.calls.last().startsWith(u"text "_s), c.lastJoins) << c.lines.join(u'/').toStdString();
        EXPECT_EQ(bar.calls.mid(bar.calls.size() - panel.calls.size()), panel.calls) << "both views alike";
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
    ASSERT_TRUE(runEventsUntil([&] { return panel.calls.last() == u"tr 1 气体的熵增加"_s; }));
    EXPECT_EQ(model->calls().size(), 1);
    EXPECT_EQ(panel.calls, QStringList({u"add 1 the entropy"_s, u"text 1 the entropy of a gas rises"_s,
                                        u"tr 1 zh-Hans:the entropy of a gas rises"_s,
                                        u"text 1 the entropy of a gas rises"_s, u"tr 1 气体的熵增加"_s}))
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
    ASSERT_TRUE(runEventsUntil([&] { return panel.calls.last() == u"tr 2 热会流动。"_s; }));
    runEventsFor(600ms);
    EXPECT_EQ(panel.calls.last(), u"tr 2 热会流动。"_s);
}

TEST_F(RowPipelineTest, DraftSentencesAreTranslatedOnceAndAnUnfinishedOneAtMostEvery900ms)
{
    rows.showDraft(u"This is done. And this is"_s);
    translate();
    EXPECT_EQ(panel.calls.last(), u"drafts This is done.|zh-Hans:This is done., And this is|zh-Hans:And this is"_s);
    rows.showDraft(u"This is done. And this is still"_s);
    advance(500ms);
    rows.showDraft(u"This is done. And this is still going"_s);
    translate();
    EXPECT_EQ(panel.calls.last(), u"drafts This is done.|zh-Hans:This is done., And this is still going|"_s)
        << "asked 0.5 s after the last unfinished one: not yet";
    advance(500ms);
    rows.showDraft(u"This is done. And this is still going on"_s);
    translate();
    EXPECT_EQ(panel.calls.last(),
              u"drafts This is done.|zh-Hans:This is done., And this is still going on|zh-Hans:And this is still going on"_s);
    rows.showLine(u"This is done."_s);
    rows.showDraft(u"This is done."_s);
    EXPECT_EQ(panel.calls.last(), u"drafts This is done.|"_s) << "a line ends the draft's cache";
}

} // namespace
