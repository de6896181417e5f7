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

#include <atomic>
#include <map>
#include <mutex>
#include <thread>

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using Response = TestServer::Response;

namespace {

const QString korean = u"오늘은 경제학의 기본 개념에 대해서 이야기해 보겠습니다"_s;
const QString english = u"Today we are going to talk about the basic ideas of economics"_s;
const QString chinese = u"今天我们来讨论经济学的基本概念和一些重要的理论"_s;

using Arrived = QList<std::pair<QString, std::optional<QString>>>;

// What the server answers unless a test says otherwise: "<target>:<text>".
Response echo(const QJsonObject &body)
{
    const QString text = body.value(u"target").toString() + u':' + body.value(u"q").toString();
    return Response::json(QJsonDocument(QJsonObject{{u"translatedText"_s, text}}).toJson());
}

// A translator whose server speaks LibreTranslate: the language list, and an answer to each text
// that the test may replace. Completions are kept in the order they arrive.
class TranslatorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings().setValue(u"translate.url"_s, server.url());
        server.setHandler([this](const TestServer::Request &request) {
            return request.path == "/languages" ? Response::json(languages)
                                                : answer(QJsonDocument::fromJson(request.body).object());
        });
        translator.onNote = [this](const QString &note) { notes.append(note); };
    }

    Translator::Done done(const QString &tag)
    {
        return [this, tag](const std::optional<QString> &result) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread()) << tag;
            arrived.append({tag, result});
        };
    }

    bool arrive(qsizetype count)
    {
        return runEventsUntil([&] { return arrived.size() >= count; });
    }

    QByteArray languages = R"JSON([{"code": "en", "targets": ["ko", "zh-Hans"]},
                                   {"code": "ko", "targets": ["en", "zh-Hans"]}, {"code": "zh-Hans"}])JSON";
    std::function<Response(const QJsonObject &)> answer = echo;
    TestServer server;   // destroyed before the state its handler uses
    Translator translator;
    QStringList notes;
    Arrived arrived;
};

TEST_F(TranslatorTest, EachLanguageHasALaneThatKeepsItsOrderBesideTheOthers)
{
    std::mutex mutex;
    std::map<QString, int> running;
    std::map<QString, int> most;   // requests at once, of each source and of all (under "")
    std::map<QString, int> sent;
    const auto count = [&](const QString &source, int step) {
        std::scoped_lock lock(mutex);
        sent[source] += std::max(step, 0);
        for (const QString &key : {source, QString()})
            most[key] = std::max(most[key], running[key] += step);
    };
    answer = [&](const QJsonObject &body) {
        count(body.value(u"source").toString(), 1);
        std::this_thread::sleep_for(std::chrono::milliseconds(QRandomGenerator::global()->bounded(5, 25)));
        count(body.value(u"source").toString(), -1);
        return echo(body);
    };
    translator.setLanguages({u"ko-KR"_s, u"en-US"_s}, u"zh-Hans"_s);
    std::map<QString, QStringList> added;
    for (int i = 0; i < 20; ++i) {
        for (const auto &[lane, text] : {std::pair{u"ko"_s, korean}, {u"en"_s, english}}) {
            added[lane].append(text + u' ' + QString::number(i));
            translator.translate(added[lane].last(), done(added[lane].last()));
        }
    }
    // Nothing to tell a language by: the lane of the first source takes it. Already in the answer
    // language: back at once, unchanged, without a request.
    added[u"ko"_s].append(u"2024 3.14 42"_s);
    translator.translate(added[u"ko"_s].last(), done(added[u"ko"_s].last()));
    translator.translate(chinese, done(chinese));
    ASSERT_TRUE(arrive(42));
    EXPECT_EQ(arrived[0], std::pair(chinese, std::optional(chinese)));
    std::map<QString, QStringList> completed;
    for (const auto &[text, result] : arrived.mid(1)) {
        completed[text.startsWith(english) ? u"en"_s : u"ko"_s].append(text);
        EXPECT_EQ(result, u"zh-Hans:" + text);
    }
    EXPECT_EQ(completed, added);
    EXPECT_EQ(sent, (std::map<QString, int>{{u"en"_s, 20}, {u"ko"_s, 21}}));
    EXPECT_EQ(most, (std::map<QString, int>{{QString(), 2}, {u"en"_s, 1}, {u"ko"_s, 1}}));
}

TEST_F(TranslatorTest, TextsWithoutALaneComeBackAtOnceAndReplacedLanesDropTheirLateAnswers)
{
    for (const auto &[id, code] : {std::pair{u"ko-KR", u"ko"}, {u"zh_TW", u"zh-Hans"}, {u"123", u"123"}})
        EXPECT_EQ(Translator::code(QStringView(id).toString()), QStringView(code)) << QStringView(id);
    std::atomic<int> koreanSent = 0;   // answered late
    answer = [&](const QJsonObject &body) {
        if (body.value(u"source").toString() == u"ko") {
            ++koreanSent;
            std::this_thread::sleep_for(150ms);
        }
        return echo(body);
    };
    translator.translate(korean, done(u"before any languages"_s));
    translator.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
    translator.translate(korean, done(u"old"_s));
    {
        Translator doomed;
        doomed.setLanguages({u"ko-KR"_s}, u"zh-Hans"_s);
        doomed.translate(korean, done(u"doomed"_s));
        doomed.translate(korean, done(u"doomed, waiting"_s));
        ASSERT_TRUE(runEventsUntil([&] { return koreanSent == 2; }));
    }
    // The Korean text now goes to the only lane there is, English's.
    translator.setLanguages({u"en-US"_s}, u"zh-Hans"_s);
    translator.translate(korean, done(u"new"_s));
    ASSERT_TRUE(arrive(2));
    translator.setLanguages({u"en-US"_s}, u"en-GB"_s);
    translator.translate(korean, done(u"en"_s));   // only English in play: taken as the answer language
    translator.setLanguages({}, u"zh-Hans"_s);     // no source: only the answer language has an answer
    translator.translate(chinese, done(u"zh"_s));
    translator.translate(korean, done(u"no lane"_s));
    runEventsFor(400ms);
    EXPECT_EQ(arrived, (Arrived{{u"before any languages"_s, std::nullopt}, {u"new"_s, u"zh-Hans:" + korean},
                                {u"en"_s, korean}, {u"zh"_s, chinese}, {u"no lane"_s, std::nullopt}}));
    EXPECT_EQ(koreanSent, 2) << "the texts still waiting in a lane are never sent";
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
    server.setHandler([](const TestServer::Request &) { return Response::json("<!DOCTYPE html><p>nginx"); });
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

TEST_F(TranslatorTest, MissingPairsAndBadAnswersGiveAbsentAndNeverReachAnotherText)
{
    // Chinese named "zh" and no targets listed, as on older servers; English and Japanese lack the pair.
    languages = R"JSON([{"code": "en", "targets": ["ko"]}, {"code": "ko"}, {"code": "ja", "targets": ["en"]},
                        {"code": "zh"}])JSON";
    // Each text gets its own kind of bad answer, after the word that ends it.
    const std::map<QString, Response> bad = {
        {u"html"_s, Response::json("<html><body>502 Bad Gateway</body></html>", 502)},
        {u"number"_s, Response::json(R"({"translatedText": 5})")},
        {u"array"_s, Response::json(R"(["译文"])")},
        {u"ja"_s, Response::json(R"({"error": "ja (Japanese) is not available as a target"})", 400)}};
    answer = [bad](const QJsonObject &body) {
        const auto found = bad.find(body.value(u"q").toString().section(u' ', -1));
        return found != bad.end() ? found->second : echo(body);
    };
    translator.setLanguages({u"ko-KR"_s, u"en-US"_s, u"ja-JP"_s}, u"zh-Hans"_s);
    ASSERT_TRUE(runEventsUntil([&] { return !notes.isEmpty(); }));
    EXPECT_TRUE(notes[0].startsWith(u"翻译需要先下载语言：英语、日语 → 简体中文。\n"_s)) << notes[0];
    EXPECT_TRUE(notes[0].contains(server.url()));

    translator.translate(u"今日は経済学の基本的な考え方についてお話しします ja"_s, done(u"ja"_s));
    ASSERT_TRUE(arrive(1));
    const QString huge(20'000, u'한');
    for (const QString &kind : {u"html"_s, u"number"_s, u"good 1"_s, u"array"_s, u"good 2"_s})
        translator.translate(korean + u' ' + kind, done(kind));
    translator.translate(huge, done(u"huge"_s));
    translator.translate(QString(), done(u"empty"_s));
    translator.translate(u" \n\t"_s, done(u"blank"_s));
    ASSERT_TRUE(arrive(9));
    // Blank texts come back at once, as they are; the lane keeps its order.
    EXPECT_EQ(arrived, (Arrived{{u"ja"_s, std::nullopt}, {u"empty"_s, QString()}, {u"blank"_s, u" \n\t"_s},
                                {u"html"_s, std::nullopt}, {u"number"_s, std::nullopt},
                                {u"good 1"_s, u"zh:" + korean + u" good 1"}, {u"array"_s, std::nullopt},
                                {u"good 2"_s, u"zh:" + korean + u" good 2"}, {u"huge"_s, u"zh:" + huge}}));
    EXPECT_EQ(notes.size(), 1);
}

} // namespace
