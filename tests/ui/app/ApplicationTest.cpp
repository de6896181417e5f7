// The application as a student starts it, in this process: a spoken lecture through the WAV
// microphone, PocketSphinx, a local model and translation server; Start, rows and an answer card
// in the pages, Stop, the save sheet, and the class in the library. And the program itself:
// started, its window shown, ended by the desktop session's signal with exit code 0.

#include "support/Screenshots.h"
#include "ai/ProviderFactory.h"
#include "platform/FileSecretStore.h"
#include "platform/Http.h"
#include "platform/Keychain.h"
#include "session/SessionStore.h"
#include "settings/Config.h"
#include "settings/UserDefaults.h"
#include "support/PageProbe.h"
#include "ui/DesktopApp.h"
#include "ui/desktop/SaveDialog.h"
#include "ui/panel/PanelHeader.h"
#include "ui/web/FeedView.h"
#include "ui/web/TranscriptView.h"

#include "SpeechAudio.h"
#include "TestServer.h"
#include "X11Client.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QProcess>
#include <QScreen>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThreadPool>

#include <gtest/gtest.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

TestServer::Response responsesReply(const QString &text)
{
    return TestServer::Response::json(QJsonDocument(QJsonObject{
        {u"output"_s, QJsonArray{QJsonObject{{u"content"_s, QJsonArray{QJsonObject{
            {u"type"_s, u"output_text"_s}, {u"text"_s, text}}}}}}}}).toJson(QJsonDocument::Compact));
}

int count(QWebEngineView *web, const QString &selector)
{
    return PageProbe::read(web, u"document.querySelectorAll('"_s + selector + u"').length"_s).toInt();
}

} // namespace

TEST(Application, AStudentStartsAClassSeesRowsAndAnAnswerStopsAndFindsItInTheLibrary)
{
    QTemporaryDir documents;
    SessionStore::useDocumentsFolder(documents.path());
    TestServer server;
    server.setHandler([](const TestServer::Request &request) {
        if (request.path == "/languages")
            return TestServer::Response::json(R"([{"code": "en", "targets": ["zh-Hans"]}])");
        if (request.path == "/translate") {
            const QString text = QJsonDocument::fromJson(request.body).object().value(u"q"_s).toString();
            return TestServer::Response::json(QJsonDocument(QJsonObject{{u"translatedText"_s, QString(u"译："_s + text)}}).toJson());
        }
        if (request.body.contains("may be questions"))
            return responsesReply(u"Because ice is less dense than water."_s);
        return responsesReply(u"SKIP"_s);
    });
    UserDefaults::setValue(UserDefaults::openaiURL, server.url());
    UserDefaults::setValue(UserDefaults::translateURL, server.url());
    SpeechAudio::Script script{{u"Good morning everyone, today we talk about the water cycle."_s,
                                u"Why does ice float on water?"_s, u"Think about it for a moment."_s}};
    script.pausesAfter = {1, 6, 2};
    const auto speech = SpeechAudio::make(documents.path(), script);
    ASSERT_TRUE(speech);
    UserDefaults::setValue(UserDefaults::micFile, speech->path);
    Keychain::useStore(std::make_unique<FileSecretStore>(documents.filePath(u"secrets.json"_s)));
    ASSERT_TRUE(Keychain::set(u"openai"_s, u"sk-test"_s));
    Config config;
    config.provider = u"openai"_s;
    config.sourceType = u"mic"_s;
    config.recognizer = u"local"_s;
    config.lectureLanguage = u"English"_s;
    config.answerLanguage = u"Simplified Chinese"_s;
    ASSERT_TRUE(config.save());

    {
        DesktopApp app;
        app.launch();
        Panel &panel = app.panel();
        ASSERT_TRUE(QTest::qWaitFor([&] { return panel.transcriptView().ready() && panel.feed().ready(); }, 60000));
        panel.header().record()->click();
        ASSERT_TRUE(QTest::qWaitFor([&] { return count(panel.transcriptView().web(), u"#rows .row"_s) >= 2; },
                                    int(speech->seconds * 1000) + 30000));
        const bool answered = QTest::qWaitFor([&] { return count(panel.feed().web(), u".card"_s) >= 1; }, 30000);
        QStringList asked;
        for (const TestServer::Request &request : server.requests())
            asked << QString::fromUtf8(request.path + ' ' + request.body.left(300));
        ASSERT_TRUE(answered) << PageProbe::read(panel.transcriptView().web(), u"document.body.innerText"_s).toString().toStdString()
                              << "\n" << asked.join(u'\n').toStdString()
                              << PageProbe::read(panel.feed().web(), u"document.body.innerText"_s).toString().toStdString();
        const QString card = PageProbe::read(panel.feed().web(), u"document.querySelector('.card .text').textContent"_s).toString();
        EXPECT_EQ(card, u"Because ice is less dense than water."_s);

        panel.header().record()->click();
        SaveDialog *sheet = nullptr;
        ASSERT_TRUE(QTest::qWaitFor([&] { return (sheet = panel.findChild<SaveDialog *>()) != nullptr; }, 10000));
        sheet->name()->setText(u"水循环 물의 순환"_s);
        sheet->answer(true);
        ASSERT_TRUE(QTest::qWaitFor([&] { return !SessionStore::list().isEmpty(); }, 10000));
        EXPECT_EQ(SessionStore::list().first().second.title, u"水循环 물의 순환"_s);
        // The library lists it and opens it first.
        app.controller().menuLibrary();
        ASSERT_TRUE(QTest::qWaitFor([&] {
            const auto &shown = app.library().current();
            return shown && shown->data.title == u"水循环 물의 순환"_s;
        }, 20000));
        app.terminate();
    }
    Http::taskPool().waitForDone();
    SessionStore::useDocumentsFolder({});
}

TEST(Application, TheProgramShowsItsPanelAndEndsCleanlyOnTheSessionsSignal)
{
    if (QGuiApplication::platformName() != u"xcb")
        GTEST_SKIP() << "the program test needs an X display (run it under xvfb-run)";
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(QUILLET_EXECUTABLE), {});
    ASSERT_TRUE(program.waitForStarted());
    QByteArray output;
    const bool shown = QTest::qWaitFor([&] {
        output += program.readAll();
        return X11Client::find("Quillet") != 0 && output.contains("Panel shown");
    }, 60000);
    ASSERT_TRUE(shown) << output.constData();
    ::kill(pid_t(program.processId()), SIGTERM);
    ASSERT_TRUE(program.waitForFinished(20000));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0) << QByteArray(output + program.readAll()).constData();
}

TEST(Application, MergingDocksTheBarAboveThePanelWhereverThePanelGoes)
{
    DesktopApp app;
    app.launch();
    Panel &panel = app.panel();
    SubtitleWindow &bar = app.subtitles();
    panel.move(300, 420);
    ASSERT_TRUE(QTest::qWaitFor([&] { return panel.frame().topLeft() == QPoint(300, 420); }, 5000));

    const auto docked = [&] {
        const QRect over = panel.frame();
        const QRect frame = bar.frame();
        return frame.left() == over.left() && frame.width() == over.width() && frame.bottom() + 1 + 6 == over.top()
               && frame.height() >= 110;
    };
    app.controller().menuMerge();
    EXPECT_TRUE(bar.isVisible());
    ASSERT_TRUE(QTest::qWaitFor(docked, 5000)) << bar.frame().x() << ',' << bar.frame().y();

    panel.move(520, 480);
    ASSERT_TRUE(QTest::qWaitFor(docked, 5000)) << "the bar stays docked when the panel moves";
    panel.resize(460, panel.height());
    ASSERT_TRUE(QTest::qWaitFor(docked, 5000)) << "and when it is resized";

    const QRect before = bar.frame();
    app.controller().menuMerge();
    ASSERT_TRUE(QTest::qWaitFor([&] { return bar.frame() == before.translated(0, -24); }, 5000));
    panel.move(300, 420);
    QTest::qWait(200);
    EXPECT_EQ(bar.frame(), before.translated(0, -24)) << "apart, the bar stays where it is";
    app.terminate();
}

TEST(Application, ScreenshotsOfAClassWithTheBarMergedAndTheChatBesideLightAndDark)
{
    // With a key there is no welcome, so no settings sheet stands in front.
    QTemporaryDir keys;
    Keychain::useStore(std::make_unique<FileSecretStore>(keys.filePath(u"secrets.json"_s)));
    ASSERT_TRUE(Keychain::set(u"claude"_s, u"sk-test"_s));
    for (const QString &theme : {u"light"_s, u"dark"_s}) {
        Config config;
        config.theme = theme;
        ASSERT_TRUE(config.save());
        DesktopApp app;
        app.launch();
        Panel &panel = app.panel();
        panel.move(80, 260);
        panel.resize(420, 700);
        app.chat().move(560, 420);
        app.chat().toggle();
        app.controller().menuMerge();
        const QList<std::pair<QString, QString>> lines{
            {u"Today we look at marginal cost and why firms care about it."_s, u"今天我们来看边际成本，以及企业为什么关心它。"_s},
            {u"오늘 수업에서는 한계 비용을 배웁니다."_s, u"今天的课上我们学习边际成本。"_s},
            {u"Remember: this will be on the midterm, chapter three."_s, u"记住：这会出现在期中考试里，第三章。"_s}};
        for (TranscriptSurface *surface : {&panel.transcript(), static_cast<TranscriptSurface *>(&app.subtitles().transcript())}) {
            surface->clear({});
            for (int i = 0; i < lines.size(); ++i) {
                surface->addLine(i, lines[i].first);
                surface->setTranslation(i, lines[i].second);
            }
            surface->setDrafts({{u"so the firm should produce more"_s, u"所以企业应该多生产"_s}});
        }
        for (FeedSurface *feed : {static_cast<FeedSurface *>(&panel), static_cast<FeedSurface *>(&app.chat())}) {
            feed->addCard(u"考试重点"_s, u"期中考试考第三章：边际成本与供给曲线。"_s, u"14:12"_s);
            feed->addCard(u"可以这样回答"_s, u"Because price exceeds marginal cost, each extra unit adds profit."_s, u"14:20"_s);
            feed->showYou(u"한계 비용이 뭐예요？"_s, {});
            feed->addReply(u"边际成本（한계 비용）就是多生产一件产品所增加的成本。"_s);
        }
        panel.setStatus(u"● 正在听 English · 本机识别"_s);
        panel.setRecording(true, u"32:08"_s);
        ASSERT_TRUE(QTest::qWaitFor([&] { return panel.feed().ready() && panel.transcriptView().ready(); }, 30000));
        QTest::qWait(1500);
        const QImage screen = QGuiApplication::primaryScreen()->grabWindow(0, 40, 0, 1000, 1000).toImage();
        Screenshots::keep(screen, u"app-class-"_s + theme);
        EXPECT_GT(Screenshots::colours(screen), 40);
        app.terminate();
    }
}
