#include "translation/Translator.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "QtPrinters.h"
#include "TestServer.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>
#include <QSettings>
#include <QThread>

#include <gtest/gtest.h>

#include <map>
#include <mutex>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

namespace {

const QString korean = u"오늘은 경제학의 기본 개념에 대해서 이야기해 보겠습니다"_s;
const QString english = u"Today we are going to talk about the basic ideas of economics"_s;
const QString chinese = u"今天我们来讨论经济学的基本概念和一些重要的理论"_s;

using Arrived = QList<std::pair<QString, std::optional<QString>>>;

TestServer::Response translated(const QString &text)
{
    return TestServer::Response::json(QJsonDocument(QJsonObject{{u"translatedText"_s, text}}).toJson());
}

TestServer::Response page(const QByteArray &html)
{
    TestServer::Response response;
    response.body = html;
    response.contentType = "text/html";
    return response;
}

// A translator whose server speaks LibreTranslate: the language list, and an answer to each text the
// test may replace. Completions are kept in the order they arrive.
class TranslatorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings().setValue(u"translate.url"_s, server.url());
        server.setHandler([this](const TestServer::Request &request) {
            return request.path == "/languages" ? TestServer::Response::json(languages)
                                                : answer(QJsonDocument::fromJson(request.body).object());
        });
        translator.onNote = [this](const QString &note) { notes.append(note); };
    }

    void TearDown() override
    {
        EXPECT_EQ(offMainThread, 0) << "completions arrive on the main thread";
        QSettings().remove(u"translate.url"_s);
    }

    void count(const QString &source, int step)
    {
        std::scoped_lock lock(mutex);
        for (const QString &key : {source, QString()})
            most[key] = std::max(most[key], running[key] += step);
    }

    // One member of every translation request, in the order they arrived.
    QStringList sent(QStringView member) const
    {
        QStringList values;
        for (const TestServer::Request &request : server.requests()) {
            if (request.path == "/translate")
                values.append(QJsonDocument::fromJson(request.body).object().value(member).toString());
        }
        return values;
    }

    Translator::Done done(const QString &tag)
    {
        return [this, tag](const std::optional<QString> &result) {
            arrived.append({tag, result});
            offMainThread += QThread::currentThread() != QCoreApplication::instance()->thread();
        };
    }

    bool arrive(qsizetype count)
    {
        return runEventsUntil([&] { return arrived.size() >= count; });
    }

    QByteArray languages = R"JSON([{"code": "en", "targets": ["en", "ko", "zh-Hans", "ja"]},
                                   {"code": "ko", "targets": ["en", "ko", "zh-Hans"]},
                                   {"code": "zh-Hans", "targets": ["en", "ko", "zh-Hans"]}])JSON";
    std::function<std::chrono::milliseconds()> delay = [] { return 0ms; };
    // By default "<target>:<text>" after the delay, counting the requests of each source (and of all,
    // under "") that run at once.
    std::function<TestServer::Response(const QJsonObject &)> answer = [this](const QJsonObject &body) {
        const QString source = body.value(u"source").toString();
        count(source, 1);
        std::this_thread::sleep_for(delay());
        count(source, -1);
        return translated(body.value(u"target").toString() + u':' + body.value(u"q").toString());
    };
    std::mutex mutex;
    std::map<QString, int> running;
    std::map<QString, int> most;
    TestServer server;   // destroyed before the state its handler uses
    Translator translator;
    QStringList notes;
    Arrived arrived;
    int offMainThread = 0;
};

TEST_F(TranslatorTest, CodesOfLocales)
{
    for (const auto &[id, code] : {std::pair{u"ko-KR", u"ko"}, {u"en-GB", u"en"}, {u"ja_JP", u"ja"},
                                   {u"zh", u"zh-Hans"}, {u"zh-Hant", u"zh-Hans"}, {u"zh_TW", u"zh-Hans"},
                                   {u"", u""}, {u"123", u"123"}})
        EXPECT_EQ(Translator::code(QStringView(id).toString()), QStringView(code)) << QStringView(id);
    EXPECT_EQ(Translator::language(u"ko"_s)->label, u"韩语"_s);
    EXPECT_FALSE(Translator::language(u"sv"_s));
}

TEST_F(TranslatorTest, EachLanguageHasALaneThatKeepsItsOrderBesideTheOthers)
{
    delay = [] { return std::chrono::milliseconds(QRandomGenerator::global()->bounded(5, 25)); };
    translator.setLanguages({u"ko-KR"_s, u"en-US"_s}, u"zh-Hans"_s);
    std::map<QString, QStringList> added;
    for (int i = 0; i < 20; ++i) {
        for (const auto &[lane, text] : {std::pair{u"ko"_s, korean}, {u"en"_s, english}}) {
            added[lane].append(lane + QString::number(i));
            translator.translate(text + u' ' + QString::number(i), done(added[lane].last()));
        }
    }
    ASSERT_TRUE(arrive(40));
    std::map<QString, QStringList> completed;
    for (const auto &[tag, result] : arrived) {
        completed[tag.left(2)].append(tag);
        EXPECT_EQ(result, u"zh-Hans:" + (tag.startsWith(u"ko") ? korean : english) + u' ' + tag.mid(2));
    }
    EXPECT_EQ(completed, added);
    EXPECT_EQ(most, (std::map<QString, int>{{QString(), 2}, {u"en"_s, 1}, {u"ko"_s, 1}}));

    // Already in the answer language: back at once, unchanged, without a request. Nothing to tell a
    // language by: the lane of the first source takes it.
    arrived.clear();
    translator.translate(chinese, done(u"zh"_s));
    translator.translate(u"2024 3.14 42"_s, done(u"digits"_s));
    ASSERT_TRUE(arrive(2));
    EXPECT_EQ(arrived, (Arrived{{u"zh"_s, chinese}, {u"digits"_s, u"zh-Hans:2024 3.14 42"_s}}));
    EXPECT_EQ(sent(u"source").mid(40), QStringList({u"ko"_s}));
    EXPECT_EQ(notes, QStringList()) << "every pair is installed";
}

TEST_F(TranslatorTest, WithoutALaneTextsComeBackAtOnce)
{
    translator.translate(korean, done(u"before any languages"_s));
    translator.setLanguages({u"en-US"_s}, u"en-GB"_s);
    translator.translate(english, done(u"en"_s));
    // Only English is in play, so whatever the text, it counts as English.
    translator.translate(korean, done(u"ko"_s));
    // With no source at all, only a text in the answer language has an answer.
    translator.setLanguages({}, u"zh-Hans"_s);
    translator.translate(chinese, done(u"zh"_s));
    translator.translate(korean, done(u"ko again"_s));
    EXPECT_EQ(arrived, (Arrived{{u"before any languages"_s, std::nullopt}, {u"en"_s, english}, {u"ko"_s, korean},
                                {u"zh"_s, chinese}, {u"ko again"_s, std::nullopt}}));
    runEventsFor(100ms);
    EXPECT_TRUE(server.requests().isEmpty());
    EXPECT_EQ(notes, QStringList());
}

TEST_F(TranslatorTest, ReplacedOrDestroyedLanesDropTheirLateAnswers)
{
    delay = [] { return 150ms; };
    translator.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
    translator.translate(korean, done(u"old"_s));
    {
        Translator doomed;
        doomed.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
        doomed.translate(korean, done(u"doomed"_s));
        doomed.translate(korean, done(u"doomed, waiting"_s));
        ASSERT_TRUE(runEventsUntil([&] { return sent(u"source").size() == 2; }));
    }
    delay = [] { return 0ms; };
    translator.setLanguages({u"en-US"_s}, u"zh-Hans"_s);
    translator.translate(korean, done(u"new"_s));
    ASSERT_TRUE(arrive(1));
    runEventsFor(400ms);
    // The Korean text now goes to the only lane there is, English's; the old lane's answer is dropped.
    EXPECT_EQ(arrived, (Arrived{{u"new"_s, u"zh-Hans:" + korean}}));
    EXPECT_EQ(sent(u"source"), QStringList({u"ko"_s, u"ko"_s, u"en"_s}));
}

TEST_F(TranslatorTest, MissingPairIsNotedAndItsTextsComeBackAbsent)
{
    languages = R"JSON([{"code": "en", "targets": ["ko", "zh-Hans"]}, {"code": "ko", "targets": ["en"]},
                        {"code": "ja", "targets": ["en"]}, {"code": "zh-Hans", "targets": ["en", "ko"]}])JSON";
    answer = [](const QJsonObject &body) {
        return body.value(u"source").toString() == u"en"
            ? translated(u"好"_s)
            : TestServer::Response::json(R"({"error": "ko (Korean) is not available as a target language"})", 400);
    };
    translator.setLanguages({u"ko-KR"_s, u"en-US"_s, u"ja-JP"_s}, u"zh-Hans"_s);
    ASSERT_TRUE(runEventsUntil([&] { return !notes.isEmpty(); }));
    EXPECT_TRUE(notes[0].startsWith(u"翻译需要先下载语言：韩语、日语 → 简体中文。\n"_s)) << notes[0];
    EXPECT_TRUE(notes[0].contains(server.url()));

    translator.translate(korean, done(u"ko"_s));
    ASSERT_TRUE(arrive(1));
    translator.translate(english, done(u"en"_s));
    ASSERT_TRUE(arrive(2));
    EXPECT_EQ(arrived, (Arrived{{u"ko"_s, std::nullopt}, {u"en"_s, u"好"_s}}));
    EXPECT_EQ(notes.size(), 1);
}

TEST_F(TranslatorTest, OlderServersNameChineseZh)
{
    languages = R"JSON([{"code": "ko", "name": "Korean"}, {"code": "zh", "name": "Chinese"}])JSON";
    translator.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
    translator.translate(korean, done(u"ko"_s));
    ASSERT_TRUE(arrive(1));
    EXPECT_EQ(arrived, (Arrived{{u"ko"_s, u"zh:" + korean}}));
    runEventsFor(50ms);
    EXPECT_EQ(notes, QStringList());
}

TEST_F(TranslatorTest, WithoutAServerTheFastModelTranslatesOrTheNoteSaysHowToSetOneUp)
{
    const QString dead = TestServer().url();   // a port where nothing listens
    QSettings().setValue(u"translate.url"_s, dead);
    translator.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
    translator.translate(korean, done(u"alone"_s));
    ASSERT_TRUE(runEventsUntil([&] { return arrived.size() == 1 && !notes.isEmpty(); }));
    EXPECT_EQ(arrived, (Arrived{{u"alone"_s, std::nullopt}}));
    EXPECT_TRUE(notes[0].startsWith(u"还不能翻译：没有连上本机的翻译服务（" + dead + u'）')) << notes[0];
    EXPECT_TRUE(notes[0].contains(u"libretranslate"_s));

    auto model = std::make_shared<FakeProvider>();
    model->setHandler([](const FakeProvider::Call &call) -> std::optional<QString> {
        return call.prompt().contains(u"잘못") ? u"（连不上 Fake，检查网络）"_s : u"  模型译文\n"_s;
    });
    translator.setFallback(model);
    server.setHandler([](const TestServer::Request &) { return page("<!DOCTYPE html><title>nginx</title>"); });
    // Nothing listening, then a web server that is no translation server.
    for (const QString &address : {dead, server.url()}) {
        QSettings().setValue(u"translate.url"_s, address);
        notes.clear();
        arrived.clear();
        translator.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
        translator.translate(korean, done(u"ko"_s));
        translator.translate(u"잘못된 문장입니다 정말로 그렇습니다"_s, done(u"failing"_s));
        ASSERT_TRUE(runEventsUntil([&] { return arrived.size() == 2 && !notes.isEmpty(); })) << address;
        EXPECT_EQ(arrived, (Arrived{{u"ko"_s, u"模型译文"_s}, {u"failing"_s, std::nullopt}}));
        EXPECT_TRUE(notes[0].contains(u"先用快速模型翻译"_s)) << notes[0];
    }
    ASSERT_EQ(model->calls().size(), 4);
    EXPECT_EQ(model->calls()[0].prompt(), u"Translate from Korean into Simplified Chinese:\n\n" + korean);
}

TEST_F(TranslatorTest, BadAnswersGiveAbsentAndNeverReachAnotherText)
{
    // Each text gets its own kind of bad answer, after the word that ends it.
    const std::map<QString, TestServer::Response> bad = {
        {u"html"_s, page("<html><body>502 Bad Gateway</body></html>")},
        {u"number"_s, TestServer::Response::json(R"({"translatedText": 5})")},
        {u"truncated"_s, TestServer::Response::json(R"({"translatedText": "半)")},
        {u"array"_s, TestServer::Response::json(R"(["译文"])")}};
    answer = [bad](const QJsonObject &body) {
        const QString text = body.value(u"q").toString();
        const auto found = bad.find(text.section(u' ', -1));
        return found != bad.end() ? found->second : translated(u"译:" + text);
    };
    translator.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
    const QString huge(20'000, u'한');
    for (const QString &kind : {u"html"_s, u"number"_s, u"good 1"_s, u"truncated"_s, u"array"_s, u"good 2"_s})
        translator.translate(korean + u' ' + kind, done(kind));
    translator.translate(huge, done(u"huge"_s));
    translator.translate(QString(), done(u"empty"_s));
    translator.translate(u" \n\t"_s, done(u"blank"_s));
    ASSERT_TRUE(arrive(9));
    // Blank texts come back at once, as they are; the lane keeps its order.
    EXPECT_EQ(arrived, (Arrived{{u"empty"_s, QString()}, {u"blank"_s, u" \n\t"_s}, {u"html"_s, std::nullopt},
                                {u"number"_s, std::nullopt}, {u"good 1"_s, u"译:" + korean + u" good 1"},
                                {u"truncated"_s, std::nullopt}, {u"array"_s, std::nullopt},
                                {u"good 2"_s, u"译:" + korean + u" good 2"}, {u"huge"_s, u"译:" + huge}}));
    EXPECT_EQ(sent(u"q").size(), 7);
}

} // namespace
