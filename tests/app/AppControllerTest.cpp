#include "app/AppController.h"

#include "Corrections.h"
#include "EventLoop.h"
#include "FakeAudioInput.h"
#include "FakeProvider.h"
#include "FakeWindows.h"
#include "LocalServices.h"
#include "QtPrinters.h"
#include "ScriptedSource.h"
#include "SpeechAudio.h"
#include "ai/AIError.h"
#include "platform/FileSecretStore.h"
#include "platform/Http.h"
#include "platform/Keychain.h"
#include "platform/MicHub.h"
#include "platform/PocketSphinxFileRecognizer.h"
#include "platform/WavFile.h"
#include "report/Inbox.h"
#include "session/SessionStore.h"

#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QThreadPool>

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

// The fast model: a card for a question, a fix for every closed row as heard, nothing else.
std::optional<QString> fastAnswer(const FakeProvider::Call &call)
{
    const QString prompt = call.prompt();
    if (prompt.contains(u"<sentences>"_s))
        return u"It measures disorder."_s;
    if (call.system.contains(u"speech-recognition errors"_s)) {
        QList<std::pair<QString, QString>> fixes;
        for (const QString &line : Corrections::sentences(prompt))
            fixes.append({line, u"精:"_s + line});
        return Corrections::reply(fixes);
    }
    return u"SKIP"_s;
}

// The main model: the final notes, then the checked report.
std::optional<QString> mainAnswer(const FakeProvider::Call &call)
{
    if (call.prompt().contains(u"Write the final class notes"_s))
        return u"## 熵\n- 熵衡量无序程度"_s;
    return uR"({"notes": "## 熵（已核对）", "events": [{"title": "Quiz", "date": "2026-12-01"}], "mindmap": null})"_s;
}

class AppControllerTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        SessionStore::useDocumentsFolder(documents.path());
        SessionStore::useClock(clock.get());
        Keychain::useStore(std::make_unique<FileSecretStore>(documents.filePath(u"secrets.json"_s)));
        Keychain::set(u"claude"_s, u"sk-test"_s);
        QSettings().remove(u"relay.url"_s);
        QFile::remove(Config::path());
        QFile::remove(Inbox::path());
        serveTranslations(translation);
        fast->setHandler(fastAnswer);
        model->setHandler(mainAnswer);
        app = std::make_unique<AppController>(windows.views(), services());
    }

    void TearDown() override
    {
        app.reset();
        QSettings().remove(u"relay.url"_s);
        QSettings().remove(u"account.email"_s);
        SessionStore::useClock(nullptr);
        SessionStore::useDocumentsFolder({});
    }

    AppServices services()
    {
        return {hub,
                clock,
                timers.scheduler(),
                [this](const Config &) {
                    ++sources;
                    auto scripted = std::make_unique<ScriptedSource>();
                    source = scripted.get();
                    return scripted;
                },
                [this](const Config &) -> std::shared_ptr<const AIProvider> {
                    if (!Keychain::get(u"claude"_s))
                        throw AIError::missingKey(u"Claude"_s);
                    return model;
                },
                [this](const Config &) -> std::shared_ptr<const AIProvider> { return fast; },
                PocketSphinxFileRecognizer::factory()};
    }

    // One pass of the engine over these lines, and what it reported handled on the main thread.
    void pass(const QStringList &lines, std::chrono::milliseconds by = 400ms)
    {
        source->feed(lines);
        const int reads = source->reads();
        advance(by);
        ASSERT_TRUE(source->waitForReads(reads + 1));
        ASSERT_TRUE(clock->waitForSleepers(1));
        Http::taskPool().waitForDone();
        runEventsFor(100ms);
    }

    // Launched, with a class running and its engine waiting for the next pass.
    void startClass()
    {
        app->launch();
        windows.panel.onRecord();
        ASSERT_TRUE(source->waitForReads(1));
        ASSERT_TRUE(clock->waitForSleepers(1));
    }

    void advance(std::chrono::milliseconds by) { timers.advance(by); }

    QTemporaryDir documents;
    TestServer translation;
    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    DueTasks timers{*clock, {}};
    std::shared_ptr<FakeProvider> model = std::make_shared<FakeProvider>();
    std::shared_ptr<FakeProvider> fast = std::make_shared<FakeProvider>();
    ScriptedSource *source = nullptr;   // owned by the running engine
    int sources = 0;                    // one per engine made
    FakeWindows windows;
    std::unique_ptr<AppController> app;
};

TEST_F(AppControllerTest, AWholeClassFromStartToTheSavedFolderAndTheReportInTheInbox)
{
    app->launch();
    EXPECT_TRUE(windows.log.entries.contains(u"panel.title Claude"_s));
    EXPECT_TRUE(windows.log.entries.contains(u"panel.status 未开始"_s));
    EXPECT_TRUE(windows.log.entries.contains(u"bar.clear 点右上角「● 开始」，翻译内容会显示在这里"_s));
    EXPECT_FALSE(app->state().engine) << "no engine runs before Start";

    windows.panel.onRecord();
    ASSERT_TRUE(app->state().session && app->state().engine);
    ASSERT_TRUE(source->waitForReads(1));
    ASSERT_TRUE(clock->waitForSleepers(1));
    pass({u"What is entropy"_s, u"in this system?"_s});
    pass({u"Think about it."_s});
    pass({u"Take your time."_s});
    ASSERT_TRUE(runEventsUntil([&] { return !windows.log.starting(u"panel.可以这样回答"_s).isEmpty(); }));
    advance(3s);   // the last row closes and goes to the Corrector
    ASSERT_TRUE(runEventsUntil([&] { return windows.log.entries.contains(u"rows.tr 3 精:Take your time."_s); }));
    EXPECT_TRUE(windows.log.entries.contains(u"rows.add 1 What is entropy"_s));
    EXPECT_TRUE(windows.log.entries.contains(u"rows.text 1 What is entropy in this system?"_s));
    EXPECT_TRUE(windows.log.entries.contains(u"bar.tr 1 精:What is entropy in this system?"_s));
    EXPECT_EQ(windows.slides.lines.size(), 4);

    windows.desktop.saves.push_back({true, u"  Thermo  "_s, u" Physics "_s});
    // The report is titled as the class was when the notes were asked for, before the dialog.
    const QString titleAtStop = app->state().session->data().title;
    windows.panel.onRecord();
    EXPECT_FALSE(app->state().session) << "saved at once, while the notes are under way";
    ASSERT_TRUE(runEventsUntil([] { return Inbox::all().size() == 1; }));
    const SessionStore::Listing classes = SessionStore::list();
    ASSERT_EQ(classes.size(), 1);
    const auto &[folder, data] = classes.front();
    EXPECT_EQ(data.title, u"Thermo"_s);
    EXPECT_EQ(data.category, u"Physics"_s);
    ASSERT_EQ(data.lines.size(), 3);
    EXPECT_EQ(data.lines[0].text, u"What is entropy in this system?"_s);
    EXPECT_EQ(data.lines[0].translation, u"精:What is entropy in this system?"_s);
    EXPECT_EQ(data.summary, u"## 熵\n- 熵衡量无序程度"_s);
    ASSERT_EQ(data.notes.size(), 1);
    EXPECT_EQ(data.notes[0].text, u"It measures disorder."_s);
    const InboxMessage message = Inbox::all().front();
    EXPECT_EQ(message.title, titleAtStop);
    EXPECT_EQ(message.report.notes, u"## 熵（已核对）"_s);
    EXPECT_FALSE(message.emailed) << "not signed in: no mail";
    EXPECT_TRUE(windows.log.entries.contains(u"panel.note 已保存「Thermo」。点右上角「课程记录」可以回放录音、看文字稿和笔记。"_s));
}

TEST(WindowWiring, DockedBarKeepsItsHeightAboveTheLeast)
{
    const QRect panel(100, 300, 420, 640);
    EXPECT_EQ(WindowWiring::dockedFrame(panel, QRect(0, 0, 800, 90)), QRect(100, 300 - 6 - 110, 420, 110));
    EXPECT_EQ(WindowWiring::dockedFrame(panel, QRect(0, 0, 800, 150)), QRect(100, 300 - 6 - 150, 420, 150));
}

TEST_F(AppControllerTest, SettingsChangesRestartWhatTheyMustAndTheChatKeepsItsHistoryPerProvider)
{
    startClass();
    struct Case
    {
        const char *what;
        std::function<void(Config &)> change;
        bool restarts;
        bool keepsHistory;
    };
    const QList<Case> cases{
        {"theme", [](Config &c) { c.theme = u"dark"_s; }, false, true},
        {"storage", [](Config &c) { c.storageLimitGB = 9; }, false, true},
        {"aiCorrect", [](Config &c) { c.aiCorrect = false; }, true, true},
        {"model", [](Config &c) { c.model = u"claude-haiku"_s; }, true, true},
        {"provider", [](Config &c) { c.provider = u"openai"_s; }, true, false},
    };
    for (const Case &c : cases) {
        windows.panel.onSend(u"hello"_s, {});
        ASSERT_TRUE(runEventsUntil([&] { return !app->state().chatBusy; }));
        const int before = sources;
        const qsizetype notes = windows.log.starting(u"panel.note 设置已保存"_s).size();
        Config changed = app->state().config;
        c.change(changed);
        windows.settings.onSave(changed, u"system"_s);
        EXPECT_EQ(sources > before, c.restarts) << c.what;
        EXPECT_EQ(windows.log.starting(u"panel.note 设置已保存"_s).size() > notes, c.restarts) << c.what;
        EXPECT_EQ(app->state().history.isEmpty(), !c.keepsHistory) << c.what;
        if (c.restarts) {
            ASSERT_TRUE(source->waitForReads(1));
            ASSERT_TRUE(clock->waitForSleepers(1));
        }
    }
}

TEST_F(AppControllerTest, ChatSaysWhyNothingWasSentAndAnEmptyReplyStandsAsAnAnswer)
{
    app->launch();
    model->hold();
    windows.panel.onSend(u"first"_s, {Attachment{u"a.pdf"_s, u"application/pdf"_s, "x"}, Attachment{u"b.png"_s, u"image/png"_s, "y"}});
    windows.chat.onSend(u"second"_s, {});
    model->enqueue(u"  "_s);
    model->release();
    ASSERT_TRUE(runEventsUntil([&] { return !app->state().chatBusy; }));
    EXPECT_EQ(windows.log.starting(u"chat.you"_s), QStringList({u"chat.you first\n📎 a.pdf\n📎 b.png"_s}));
    EXPECT_TRUE(windows.log.entries.contains(u"panel.note Fake 还在回答上一条，稍等一下。"_s));
    EXPECT_TRUE(windows.log.entries.contains(u"chat.reply （Fake 没有回答）"_s));
    ASSERT_EQ(app->state().history.size(), 2);
    EXPECT_EQ(app->state().history[0].content, u"first"_s) << "the plain message, not the prompt";
    EXPECT_EQ(app->state().history[0].attachments.size(), 2);
    EXPECT_TRUE(model->calls().first().prompt().contains(u"<transcript>\n\n</transcript>"_s))
        << "after class the context is empty and the tags stay";

    Keychain::set(u"claude"_s, QString());
    windows.settings.onSave(app->state().config, u"system"_s);   // nothing changed: no restart
    Config other = app->state().config;
    other.model = u"another"_s;
    windows.settings.onSave(other, u"system"_s);
    EXPECT_TRUE(windows.log.entries.contains(u"panel.note 还没有填 Claude 的 API key：翻译照常工作，AI 功能需要 key。点右上角齿轮去设置。"_s));
    windows.panel.onSend(u"third"_s, {});
    EXPECT_TRUE(windows.log.entries.contains(u"chat.note 还没有可用的 AI，不能对话。点主窗口右上角齿轮选一个 AI 并填上 API key。"_s));
}

TEST_F(AppControllerTest, OneFinalSummaryPerClassAndNotesThatFailOrComeTooLateAreNotSaved)
{
    startClass();
    pass({u"That's all for today, see you next week."_s});
    model->setHandler([](const FakeProvider::Call &) -> std::optional<QString> { return u"（Claude 连不上）"_s; });
    clock->advance(301s);   // the class end counts after five minutes
    pass({u"That's all for today, see you next week."_s});
    ASSERT_TRUE(runEventsUntil([&] { return !windows.desktop.notes.isEmpty(); }));
    EXPECT_EQ(windows.desktop.notes, QStringList{u"这节课结束了: 记得点「停止」保存录音。"_s});
    const qsizetype asked = model->callsContaining(u"Write the final class notes"_s).size();
    EXPECT_EQ(asked, 1);

    // Stop after the class end asks no second time; discarding deletes the folder at once.
    windows.desktop.saves.push_back({false, u"x"_s, QString()});
    windows.desktop.discards.push_back(true);
    const QString folder = app->state().session->folder();
    windows.panel.onRecord();
    EXPECT_EQ(model->callsContaining(u"Write the final class notes"_s).size(), asked);
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_TRUE(windows.log.entries.contains(u"panel.note 这节课没有保存。"_s));
    EXPECT_TRUE(Inbox::all().isEmpty()) << "a failure text is no notes: no report";
}

TEST_F(AppControllerTest, NotesThatArriveAfterTheClassWasDiscardedWriteNothingBackButReachTheInbox)
{
    startClass();
    pass({u"Entropy always grows."_s});
    model->hold();
    windows.desktop.saves.push_back({false, u"x"_s, QString()});
    windows.desktop.discards.push_back(true);
    const QString folder = app->state().session->folder();
    windows.panel.onRecord();
    ASSERT_TRUE(model->waitForCalls(1));
    EXPECT_FALSE(QFileInfo::exists(folder));
    model->release();
    ASSERT_TRUE(runEventsUntil([] { return Inbox::all().size() == 1; }));
    EXPECT_FALSE(QFileInfo::exists(folder)) << "the folder isn't made again";
    EXPECT_TRUE(SessionStore::list().isEmpty());
    EXPECT_TRUE(windows.log.entries.contains(u"panel.final ## 熵\n- 熵衡量无序程度"_s));
}

TEST_F(AppControllerTest, ASavedClassIsRefinedFromItsRecordingAndKeepsTheLiveCopy)
{
    const auto speech = SpeechAudio::make(documents.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    WavFile wav(speech->path);
    ASSERT_FALSE(wav.open());
    std::vector<float> samples, all;
    while (wav.read(16'000, samples))
        all.insert(all.end(), samples.begin(), samples.end());
    input->delivered = {16'000, 1};

    startClass();
    pass({u"Photosynthesis turns light"_s, u"into chemical energy."_s});
    input->play(all, 1'600);
    windows.desktop.saves.push_back({true, u"Biology"_s, QString()});
    windows.panel.onRecord();
    ASSERT_TRUE(runEventsUntil([&] { return !windows.log.starting(u"panel.note 「Biology」的文字稿已精修完成"_s).isEmpty(); },
                               60s));
    const auto [folder, data] = SessionStore::list().front();
    EXPECT_EQ(data.refined, true);
    EXPECT_GE(data.lines.size(), 2);
    EXPECT_TRUE(std::any_of(data.lines.cbegin(), data.lines.cend(), [](const SessionData::Line &line) {
        return line.text.contains(u"light"_s, Qt::CaseInsensitive) && line.translation.startsWith(u"zh-Hans:"_s);
    }));
    EXPECT_TRUE(QFileInfo::exists(folder + u"/文字稿（实时版）.md"_s));
    EXPECT_TRUE(windows.library.refining.isEmpty());
}

TEST_F(AppControllerTest, ASignedInStudentGetsTheReportByMailAndTheInboxKnowsItWasSent)
{
    TestServer relay;
    relay.setHandler([](const TestServer::Request &request) {
        if (request.path == "/auth/me")
            return TestServer::Response::json(R"({"email": "li@example.edu", "hasPassword": true})");
        return TestServer::Response::json(request.path == "/mail/report" ? "{}" : R"({"error": "not_found"})",
                                          request.path == "/mail/report" ? 200 : 404);
    });
    QSettings().setValue(u"relay.url"_s, relay.url());
    QSettings().setValue(u"account.email"_s, u"li@example.edu"_s);
    Keychain::set(u"quillet-session"_s, u"token-1"_s);

    startClass();
    EXPECT_TRUE(windows.log.entries.contains(u"panel.title Quillet AI"_s));
    EXPECT_TRUE(windows.log.entries.contains(u"panel.account li@example.edu"_s));
    pass({u"The exam is on December first."_s});
    windows.desktop.saves.push_back({true, u"Physics 1"_s, QString()});
    windows.panel.onRecord();
    ASSERT_TRUE(runEventsUntil([&] {
        return windows.log.entries.contains(u"panel.note 📬 核对过的课堂笔记和思维导图已发到 li@example.edu。"_s);
    }));
    ASSERT_EQ(Inbox::all().size(), 1);
    EXPECT_TRUE(Inbox::all().front().emailed);
    const auto mails = relay.requests();
    EXPECT_TRUE(std::any_of(mails.cbegin(), mails.cend(), [](const TestServer::Request &request) {
        return request.path == "/mail/report" && request.headers.value("x-quillet-session") == "token-1";
    }));
}

TEST_F(AppControllerTest, ARelayThatIsDownAtLaunchLeavesTheApplicationUsableWithoutSignIn)
{
    QSettings().setValue(u"relay.url"_s, u"http://127.0.0.1:9"_s);
    app->launch();
    runEventsFor(300ms);
    Http::taskPool().waitForDone();
    runEventsFor(50ms);
    EXPECT_TRUE(windows.log.entries.contains(u"panel.account -"_s));
    EXPECT_FALSE(windows.log.entries.contains(u"panel.hidden"_s)) << "no sign-in window stands in the way";
    windows.panel.onRecord();
    EXPECT_TRUE(app->state().session) << "a class still starts";
}

} // namespace
