#include "text/Clock.h"
#include "text/IsoDate.h"
#include "text/Json.h"

#include <QElapsedTimer>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <thread>

using namespace Text;

TEST(Json, CutsFromFirstToLastBracket)
{
    EXPECT_EQ(Json::cut(QStringLiteral("```json\n{\"a\": {\"b\": 1}}\n```")), QStringLiteral("{\"a\": {\"b\": 1}}"));
    EXPECT_EQ(Json::cut(QStringLiteral("Here: [1, [2]] done"), Json::Bracket::Array), QStringLiteral("[1, [2]]"));
    EXPECT_FALSE(Json::cut(QStringLiteral("no json here")));
    EXPECT_FALSE(Json::cut(QStringLiteral("} backwards {")));

    const auto object = Json::objectIn(QStringLiteral("Sure! {\"question\": \"Why?\"} Hope this helps."));
    ASSERT_TRUE(object);
    EXPECT_EQ(Json::string(*object, u"question"), QStringLiteral("Why?"));
    EXPECT_FALSE(Json::objectIn(QStringLiteral("{not json}")));
    EXPECT_FALSE(Json::arrayIn(QStringLiteral("{\"a\": 1}")));
    EXPECT_EQ(Json::arrayIn(QStringLiteral("x [\"a\", 2] y"))->size(), 2);
}

TEST(Json, WrongTypesCountAsMissing)
{
    const auto object = Json::parseObject(R"JSON({"s": "text", "n": 2.5, "i": 7, "b": true, "o": {},
        "a": [1], "names": ["x", "y"], "mixed": ["x", 1], "null": null})JSON");
    ASSERT_TRUE(object);
    EXPECT_EQ(Json::string(*object, u"s"), QStringLiteral("text"));
    EXPECT_FALSE(Json::string(*object, u"n"));
    EXPECT_FALSE(Json::string(*object, u"null"));
    EXPECT_FALSE(Json::string(*object, u"absent"));
    EXPECT_EQ(Json::number(*object, u"n"), 2.5);
    EXPECT_FALSE(Json::number(*object, u"s"));
    EXPECT_EQ(Json::integer(*object, u"i"), 7);
    EXPECT_FALSE(Json::integer(*object, u"n"));
    EXPECT_EQ(Json::boolean(*object, u"b"), true);
    EXPECT_FALSE(Json::boolean(*object, u"i"));
    EXPECT_TRUE(Json::object(*object, u"o"));
    EXPECT_FALSE(Json::object(*object, u"a"));
    EXPECT_TRUE(Json::array(*object, u"a"));
    EXPECT_FALSE(Json::array(*object, u"o"));
    EXPECT_EQ(Json::strings(*object, u"names"), QStringList({QStringLiteral("x"), QStringLiteral("y")}));
    EXPECT_FALSE(Json::strings(*object, u"mixed"));
    EXPECT_FALSE(Json::parseObject("[1]"));
    EXPECT_FALSE(Json::parseObject(""));
    EXPECT_FALSE(Json::parseArray("{}"));
}

TEST(IsoDate, WholeSecondsInUtcWithZ)
{
    const QDateTime date(QDate(2026, 11, 23), QTime(9, 31, 45, 678), Qt::UTC);
    EXPECT_EQ(IsoDate::format(date), QStringLiteral("2026-11-23T09:31:45Z"));
    EXPECT_EQ(IsoDate::format(date.toTimeZone(QTimeZone(9 * 3600))), QStringLiteral("2026-11-23T09:31:45Z"));

    const auto parsed = IsoDate::parse(QStringLiteral("2026-11-23T09:31:45Z"));
    ASSERT_TRUE(parsed);
    EXPECT_EQ(*parsed, QDateTime(QDate(2026, 11, 23), QTime(9, 31, 45), Qt::UTC));
    EXPECT_EQ(IsoDate::parse(QStringLiteral("2026-11-23T18:31:45+09:00")), parsed);

    for (const char *bad : {"2026-11-23", "2026-11-23T09:31:45", "2026-11-23T09:31:45.5Z", "2026-13-01T00:00:00Z",
                            "2026-02-30T00:00:00Z", " 2026-11-23T09:31:45Z", "", "yesterday"})
        EXPECT_FALSE(IsoDate::parse(QString::fromLatin1(bad))) << bad;
}

TEST(SystemClock, SleepEndsAtOnceWhenStopIsRequested)
{
    SystemClock clock;
    EXPECT_LE(qAbs(clock.now().secsTo(QDateTime::currentDateTimeUtc())), 1);
    std::stop_source source;
    QElapsedTimer timer;
    timer.start();
    std::thread stopper([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(30));
        source.request_stop();
    });
    const auto before = clock.elapsed();
    EXPECT_FALSE(clock.sleep(std::chrono::seconds(30), source.get_token()));
    stopper.join();
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_GE(clock.elapsed(), before);
    EXPECT_TRUE(clock.sleep(std::chrono::milliseconds(1), std::stop_source().get_token()));
}
