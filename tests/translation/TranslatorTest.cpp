#include "translation/Translator.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "QtPrinters.h"
#include "TestServer.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSettings>
#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <map>

using namespace std::chrono_literals;

namespace {

// A local server speaking LibreTranslate: its language list, and "<target>:" + the text as the
// translation, after a delay the test chooses. It counts how many requests of each source run at once.
class LibreTranslateServer
{
public:
    LibreTranslateServer()
    {
        server.setHandler([this](const TestServer::Request &request) { return answer(request); });
    }

    // One member of every translation request, in the order they arrived.
    QStringList sent(QStringView member) const
    {
        QStringList result;
        for (const TestServer::Request &request : server.requests()) {
            if (request.path == "/translate")
                result.append(QJsonDocument::fromJson(request.body).object().value(member).toString());
        }
        return result;
    }

    QStringList sources() const { return sent(u"source"); }
    QStringList texts() const { return sent(u"q"); }

    TestServer server;
    QByteArray languages = R"JSON([
        {"code": "en", "name": "English", "targets": ["en", "ko", "zh-Hans", "ja"]},
        {"code": "ko", "name": "Korean", "targets": ["en", "ko", "zh-Hans"]},
        {"code": "zh-Hans", "name": "Chinese", "targets": ["en", "ko", "zh-Hans"]}
    ])JSON";
    std::function<std::chrono::milliseconds()> delay = [] { return 0ms; };
    std::atomic<int> running{0};
    std::atomic<int> mostRunning{0};
    std::mutex mutex;
    std::map<QString, int> runningPerSource;
    std::map<QString, int> mostPerSource;

private:
    TestServer::Response answer(const TestServer::Request &request)
    {
        if (request.path == "/languages")
            return TestServer::Response::json(languages);
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        const QString source = body.value(u"source").toString();
        enter(source);
        std::this_thread::sleep_for(delay());
        leave(source);
        const QString translated = body.value(u"target").toString() + u':' + body.value(u"q").toString();
        return TestServer::Response::json(QJsonDocument(QJsonObject{{QStringLiteral("translatedText"), translated}}).toJson());
    }

    void enter(const QString &source)
    {
        const int now = ++running;
        int most = mostRunning;
        while (now > most && !mostRunning.compare_exchange_weak(most, now)) {
        }
        std::scoped_lock lock(mutex);
        mostPerSource[source] = std::max(mostPerSource[source], ++runningPerSource[source]);
    }

    void leave(const QString &source)
    {
        --running;
        std::scoped_lock lock(mutex);
        --runningPerSource[source];
    }
};

// Completions in the order they arrived: (tag, result).
struct Results
{
    Translator::Done add(const QString &tag)
    {
        return [this, tag](const std::optional<QString> &result) {
            arrived.append({tag, result});
            offMainThread += QThread::currentThread() != QCoreApplication::instance()->thread();
        };
    }

    std::optional<QString> of(const QString &tag) const
    {
        for (const auto &[name, result] : arrived) {
            if (name == tag)
                return result;
        }
        return QStringLiteral("(never arrived)");
    }

    QStringList tags() const
    {
        QStringList result;
        for (const auto &entry : arrived)
            result.append(entry.first);
        return result;
    }

    QList<std::pair<QString, std::optional<QString>>> arrived;
    int offMainThread = 0;
};

const QString korean = QStringLiteral("오늘은 경제학의 기본 개념에 대해서 이야기해 보겠습니다");
const QString english = QStringLiteral("Today we are going to talk about the basic ideas of economics");
const QString chinese = QStringLiteral("今天我们来讨论经济学的基本概念和一些重要的理论");

class TranslatorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings().setValue(QStringLiteral("translate.url"), libre.server.url());
        translator.onNote = [this](const QString &note) { notes.append(note); };
    }

    void TearDown() override
    {
        EXPECT_EQ(results.offMainThread, 0);
        QSettings().remove(QStringLiteral("translate.url"));
    }

    // The address of a port where nothing listens.
    static QString deadAddress()
    {
        int port = 0;
        {
            TestServer closed;
            port = closed.port();
        }
        return QStringLiteral("http://127.0.0.1:%1").arg(port);
    }

    LibreTranslateServer libre;
    Translator translator;
    QStringList notes;
    Results results;
};

TEST_F(TranslatorTest, CodesOfLocales)
{
    EXPECT_EQ(Translator::code(QStringLiteral("ko-KR")), QStringLiteral("ko"));
    EXPECT_EQ(Translator::code(QStringLiteral("en-US")), QStringLiteral("en"));
    EXPECT_EQ(Translator::code(QStringLiteral("en-GB")), QStringLiteral("en"));
    EXPECT_EQ(Translator::code(QStringLiteral("ja_JP")), QStringLiteral("ja"));
    for (const char *chinese : {"zh-Hans", "zh-Hant", "zh-CN", "zh_TW", "zh"})
        EXPECT_EQ(Translator::code(QString::fromLatin1(chinese)), QStringLiteral("zh-Hans")) << chinese;
    EXPECT_EQ(Translator::code(QString()), QString());
    EXPECT_EQ(Translator::code(QStringLiteral("123")), QStringLiteral("123"));
    EXPECT_EQ(Translator::language(QStringLiteral("ko"))->label, QStringLiteral("韩语"));
    EXPECT_FALSE(Translator::language(QStringLiteral("sv")));
}

TEST_F(TranslatorTest, SendsEachTextToTheLaneOfItsLanguage)
{
    translator.setLanguages({QStringLiteral("ko-KR"), QStringLiteral("en-US")}, QStringLiteral("zh-Hans"));
    translator.translate(chinese, results.add(QStringLiteral("zh")));
    // Already in the answer language: back at once, unchanged, without a request.
    ASSERT_EQ(results.tags(), QStringList{QStringLiteral("zh")});
    EXPECT_EQ(results.of(QStringLiteral("zh")), chinese);

    translator.translate(korean, results.add(QStringLiteral("ko")));
    translator.translate(english, results.add(QStringLiteral("en")));
    // Nothing to tell a language by: the lane of the first source takes it.
    translator.translate(QStringLiteral("2024 3.14 42"), results.add(QStringLiteral("digits")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 4; }));
    EXPECT_EQ(results.of(QStringLiteral("ko")), QStringLiteral("zh-Hans:") + korean);
    EXPECT_EQ(results.of(QStringLiteral("en")), QStringLiteral("zh-Hans:") + english);
    EXPECT_EQ(results.of(QStringLiteral("digits")), QStringLiteral("zh-Hans:2024 3.14 42"));
    QStringList sources = libre.sources();
    sources.sort();
    EXPECT_EQ(sources, (QStringList{QStringLiteral("en"), QStringLiteral("ko"), QStringLiteral("ko")}));
    EXPECT_TRUE(notes.isEmpty()) << notes.join(u'\n').toStdString();
}

TEST_F(TranslatorTest, KeepsTheOrderOfALaneUnderRandomDelays)
{
    libre.delay = [] { return std::chrono::milliseconds(QRandomGenerator::global()->bounded(0, 25)); };
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    QStringList expected;
    for (int i = 0; i < 40; ++i) {
        const QString tag = QString::number(i);
        expected.append(tag);
        translator.translate(korean + u' ' + tag, results.add(tag));
    }
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 40; }));
    EXPECT_EQ(results.tags(), expected);
    for (int i = 0; i < 40; ++i)
        EXPECT_EQ(results.of(QString::number(i)), QStringLiteral("zh-Hans:") + korean + u' ' + QString::number(i));
    EXPECT_EQ(libre.mostPerSource[QStringLiteral("ko")], 1);
}

TEST_F(TranslatorTest, RunsLanesSideBySide)
{
    libre.delay = [] { return 60ms; };
    translator.setLanguages({QStringLiteral("ko-KR"), QStringLiteral("en-US")}, QStringLiteral("zh-Hans"));
    for (int i = 0; i < 5; ++i) {
        translator.translate(korean + u' ' + QString::number(i), results.add(QStringLiteral("ko%1").arg(i)));
        translator.translate(english + u' ' + QString::number(i), results.add(QStringLiteral("en%1").arg(i)));
    }
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 10; }));
    EXPECT_EQ(libre.mostRunning, 2);
    EXPECT_EQ(libre.mostPerSource[QStringLiteral("ko")], 1);
    EXPECT_EQ(libre.mostPerSource[QStringLiteral("en")], 1);
    QStringList koreanOrder;
    QStringList englishOrder;
    for (const QString &tag : results.tags())
        (tag.startsWith(u"ko") ? koreanOrder : englishOrder).append(tag);
    EXPECT_EQ(koreanOrder, (QStringList{QStringLiteral("ko0"), QStringLiteral("ko1"), QStringLiteral("ko2"),
                                        QStringLiteral("ko3"), QStringLiteral("ko4")}));
    EXPECT_EQ(englishOrder, (QStringList{QStringLiteral("en0"), QStringLiteral("en1"), QStringLiteral("en2"),
                                         QStringLiteral("en3"), QStringLiteral("en4")}));
}

TEST_F(TranslatorTest, TargetLikeTheOnlySourceMakesNoLane)
{
    translator.setLanguages({QStringLiteral("en-US")}, QStringLiteral("en-GB"));
    translator.translate(english, results.add(QStringLiteral("en")));
    // Only English is in play, so whatever the text, it counts as English.
    translator.translate(korean, results.add(QStringLiteral("ko")));
    ASSERT_EQ(results.arrived.size(), 2);
    EXPECT_EQ(results.of(QStringLiteral("en")), english);
    EXPECT_EQ(results.of(QStringLiteral("ko")), korean);

    // With no source at all, only a text in the answer language has an answer.
    translator.setLanguages({}, QStringLiteral("zh-Hans"));
    translator.translate(chinese, results.add(QStringLiteral("zh")));
    translator.translate(korean, results.add(QStringLiteral("ko again")));
    ASSERT_EQ(results.arrived.size(), 4);
    EXPECT_EQ(results.of(QStringLiteral("zh")), chinese);
    EXPECT_EQ(results.of(QStringLiteral("ko again")), std::nullopt);
    runEventsFor(100ms);
    EXPECT_TRUE(libre.server.requests().isEmpty());
    EXPECT_TRUE(notes.isEmpty());
}

TEST_F(TranslatorTest, BeforeAnyLanguagesEverythingIsAbsent)
{
    translator.translate(korean, results.add(QStringLiteral("ko")));
    ASSERT_EQ(results.arrived.size(), 1);
    EXPECT_EQ(results.of(QStringLiteral("ko")), std::nullopt);
}

TEST_F(TranslatorTest, NewLanguagesReplaceTheLanesAndDropTheirLateAnswers)
{
    libre.delay = [] { return 150ms; };
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    translator.translate(korean, results.add(QStringLiteral("old")));
    ASSERT_TRUE(runEventsUntil([&] { return libre.sources().contains(QStringLiteral("ko")); }));

    libre.delay = [] { return 0ms; };
    translator.setLanguages({QStringLiteral("en-US")}, QStringLiteral("zh-Hans"));
    translator.translate(korean, results.add(QStringLiteral("new")));
    ASSERT_TRUE(runEventsUntil([&] { return !results.arrived.isEmpty(); }));
    runEventsFor(300ms);
    // The Korean text now goes to the only lane there is, English's; the old lane's answer is dropped.
    EXPECT_EQ(results.tags(), QStringList{QStringLiteral("new")});
    EXPECT_EQ(libre.sources(), (QStringList{QStringLiteral("ko"), QStringLiteral("en")}));
}

TEST_F(TranslatorTest, MissingPairIsNotedAndItsTextsComeBackAbsent)
{
    libre.languages = R"JSON([
        {"code": "en", "name": "English", "targets": ["ko", "zh-Hans"]},
        {"code": "ko", "name": "Korean", "targets": ["en"]},
        {"code": "ja", "name": "Japanese", "targets": ["en"]},
        {"code": "zh-Hans", "name": "Chinese", "targets": ["en", "ko"]}
    ])JSON";
    libre.server.setHandler([this](const TestServer::Request &request) {
        if (request.path == "/languages")
            return TestServer::Response::json(libre.languages);
        const QJsonObject body = QJsonDocument::fromJson(request.body).object();
        if (body.value(u"source").toString() == u"en")
            return TestServer::Response::json(R"({"translatedText": "好"})");
        return TestServer::Response::json(R"({"error": "ko (Korean) is not available as a target language"})", 400);
    });
    translator.setLanguages({QStringLiteral("ko-KR"), QStringLiteral("en-US"), QStringLiteral("ja-JP")},
                            QStringLiteral("zh-Hans"));
    ASSERT_TRUE(runEventsUntil([&] { return !notes.isEmpty(); }));
    EXPECT_TRUE(notes[0].startsWith(QStringLiteral("翻译需要先下载语言：韩语、日语 → 简体中文。\n")))
        << notes[0].toStdString();
    EXPECT_TRUE(notes[0].contains(libre.server.url()));

    translator.translate(korean, results.add(QStringLiteral("ko")));
    translator.translate(english, results.add(QStringLiteral("en")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 2; }));
    EXPECT_EQ(results.of(QStringLiteral("ko")), std::nullopt);
    EXPECT_EQ(results.of(QStringLiteral("en")), QStringLiteral("好"));
    EXPECT_EQ(notes.size(), 1);
}

TEST_F(TranslatorTest, OlderServersNameChineseZh)
{
    libre.languages = R"JSON([{"code": "ko", "name": "Korean"}, {"code": "zh", "name": "Chinese"}])JSON";
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    translator.translate(korean, results.add(QStringLiteral("ko")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 1; }));
    EXPECT_EQ(results.of(QStringLiteral("ko")), QStringLiteral("zh:") + korean);
    runEventsFor(50ms);
    EXPECT_TRUE(notes.isEmpty()) << notes.join(u'\n').toStdString();
}

TEST_F(TranslatorTest, WithoutAServerTheFastModelTranslates)
{
    QSettings().setValue(QStringLiteral("translate.url"), deadAddress());
    auto model = std::make_shared<FakeProvider>();
    model->setHandler([](const FakeProvider::Call &call) -> std::optional<QString> {
        return call.prompt().contains(u"잘못") ? QStringLiteral("（连不上 Fake，检查网络）") : QStringLiteral("  模型译文\n");
    });
    translator.setFallback(model);
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    translator.translate(korean, results.add(QStringLiteral("ko")));
    translator.translate(QStringLiteral("잘못된 문장입니다 정말로 그렇습니다"), results.add(QStringLiteral("failing")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 2 && !notes.isEmpty(); }));
    EXPECT_EQ(results.of(QStringLiteral("ko")), QStringLiteral("模型译文"));
    EXPECT_EQ(results.of(QStringLiteral("failing")), std::nullopt);
    ASSERT_EQ(model->calls().size(), 2);
    EXPECT_EQ(model->calls()[0].prompt(), QStringLiteral("Translate from Korean into Simplified Chinese:\n\n") + korean);
    EXPECT_TRUE(notes[0].contains(QStringLiteral("先用快速模型翻译")));
}

TEST_F(TranslatorTest, WithNeitherEngineTextsAreAbsentAndTheNoteSaysHowToSetUp)
{
    const QString dead = deadAddress();
    QSettings().setValue(QStringLiteral("translate.url"), dead);
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    translator.translate(korean, results.add(QStringLiteral("ko")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 1 && !notes.isEmpty(); }));
    EXPECT_EQ(results.of(QStringLiteral("ko")), std::nullopt);
    EXPECT_TRUE(notes[0].startsWith(QStringLiteral("还不能翻译：没有连上本机的翻译服务（") + dead + u'）'));
    EXPECT_TRUE(notes[0].contains(QStringLiteral("libretranslate")));
}

TEST_F(TranslatorTest, BadAnswersGiveAbsentAndNeverReachAnotherText)
{
    // Each text gets its own kind of bad answer; the server names the text it answers.
    libre.server.setHandler([this](const TestServer::Request &request) {
        if (request.path == "/languages")
            return TestServer::Response::json(libre.languages);
        const QString text = QJsonDocument::fromJson(request.body).object().value(u"q").toString();
        TestServer::Response response;
        if (text.endsWith(u"html")) {
            response.body = "<html><body>502 Bad Gateway</body></html>";
            response.contentType = "text/html";
        } else if (text.endsWith(u"number")) {
            response.body = R"({"translatedText": 5})";
        } else if (text.endsWith(u"truncated")) {
            response.body = R"({"translatedText": "半)";
        } else if (text.endsWith(u"array")) {
            response.body = R"(["译文"])";
        } else {
            response.body = QJsonDocument(QJsonObject{{QStringLiteral("translatedText"), QString(QStringLiteral("译:") + text)}}).toJson();
        }
        return response;
    });
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    const QString huge = QString(20000, u'한');
    for (const char *kind : {"html", "number", "good 1", "truncated", "array", "good 2"})
        translator.translate(korean + u' ' + QString::fromLatin1(kind), results.add(QString::fromLatin1(kind)));
    translator.translate(huge, results.add(QStringLiteral("huge")));
    translator.translate(QString(), results.add(QStringLiteral("empty")));
    translator.translate(QStringLiteral(" \n\t"), results.add(QStringLiteral("blank")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 9; }));

    EXPECT_EQ(results.of(QStringLiteral("empty")), QString());
    EXPECT_EQ(results.of(QStringLiteral("blank")), QStringLiteral(" \n\t"));
    for (const char *bad : {"html", "number", "truncated", "array"})
        EXPECT_EQ(results.of(QString::fromLatin1(bad)), std::nullopt) << bad;
    EXPECT_EQ(results.of(QStringLiteral("good 1")), QStringLiteral("译:") + korean + QStringLiteral(" good 1"));
    EXPECT_EQ(results.of(QStringLiteral("good 2")), QStringLiteral("译:") + korean + QStringLiteral(" good 2"));
    EXPECT_EQ(results.of(QStringLiteral("huge")), QStringLiteral("译:") + huge);
    EXPECT_EQ(libre.texts().size(), 7);
    EXPECT_TRUE(libre.texts().contains(huge));
}

TEST_F(TranslatorTest, AServerAnsweringHtmlCountsAsNoServer)
{
    libre.server.setHandler([](const TestServer::Request &) {
        TestServer::Response response;
        response.body = "<!DOCTYPE html><title>Welcome to nginx</title>";
        response.contentType = "text/html";
        return response;
    });
    auto model = std::make_shared<FakeProvider>();
    model->setHandler([](const FakeProvider::Call &) { return QStringLiteral("模型译文"); });
    translator.setFallback(model);
    translator.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
    translator.translate(korean, results.add(QStringLiteral("ko")));
    ASSERT_TRUE(runEventsUntil([&] { return results.arrived.size() == 1 && !notes.isEmpty(); }));
    EXPECT_EQ(results.of(QStringLiteral("ko")), QStringLiteral("模型译文"));
    EXPECT_TRUE(notes[0].contains(QStringLiteral("先用快速模型翻译")));
}

TEST_F(TranslatorTest, ADestroyedTranslatorCallsNothing)
{
    libre.delay = [] { return 100ms; };
    {
        Translator doomed;
        doomed.onNote = [this](const QString &note) { notes.append(note); };
        doomed.setLanguages({QStringLiteral("ko-KR")}, QStringLiteral("zh-Hans"));
        doomed.translate(korean, results.add(QStringLiteral("ko")));
        doomed.translate(korean, results.add(QStringLiteral("ko2")));
        ASSERT_TRUE(runEventsUntil([&] { return !libre.sources().isEmpty(); }));
    }
    runEventsFor(400ms);
    EXPECT_TRUE(results.arrived.isEmpty());
}

} // namespace
