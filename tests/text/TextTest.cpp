#include "text/Characters.h"
#include "text/Clock.h"
#include "text/IsoDate.h"
#include "text/Json.h"
#include "text/Regex.h"

#include "ManualClock.h"

#include <QTimeZone>

#include <gtest/gtest.h>

#include <thread>

using namespace Text;
using namespace std::chrono_literals;

TEST(Characters, CountsCutsAndClassifiesByUnicodeRules)
{
    // Each row is a text with a bar between its user-perceived characters.
    for (const char16_t *row : {u"", u"h|e|l|l|o", u"안|녕|하|세|요", u"\u1100\u1161|\u1102\u1161\u11AB",
                                u"漢|字|か|な|カ|ナ", u"a|b|👍🏽|👨‍👩‍👧|c\u0301|d", u"e\u0301|t|e\u0301",
                                u"a|\r\n|b", u"a|\u0085|안", u"🇰🇷|🇫🇷"}) {
        const QStringList expected = QString::fromUtf16(row).split(u'|', Qt::SkipEmptyParts);
        const QString text = expected.join(QString());
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(characterCount(text), expected.size());
        EXPECT_EQ(characters(text), expected);
        for (qsizetype n = -1; n <= expected.size() + 1; ++n) {
            EXPECT_EQ(prefix(text, n), expected.mid(0, qMax(0, n)).join(QString())) << n;
            const qsizetype from = qBound(0, expected.size() - n, expected.size());
            EXPECT_EQ(suffix(text, n), expected.mid(from).join(QString())) << n;
        }
    }

    // The class, code points in it, code points outside it, a text and the text trimmed by the class.
    using enum CharClass;
    const std::tuple<CharClass, std::u32string, std::u32string, const char16_t *, const char16_t *> rows[] = {
        {Letters, U"a가漢かカé\u0301\u093F", U"1 !👍\u3000", u"가e\u0301", u""},
        {DecimalDigits, U"7٣", U"½三a", u"12ab34", u"ab"},
        {Whitespaces, U" \t\u00A0\u3000", U"\n\r\v\f\u0085a", u" \u3000a\n\t", u"a\n"},
        {WhitespacesAndNewlines, U" \t\u00A0\u3000\n\r\v\f\u0085", U"\u2028a", u"\u0085\t 안녕\u3000\n", u"안녕"},
    };
    for (const auto &[charClass, members, others, text, trimmedText] : rows) {
        SCOPED_TRACE(int(charClass));
        for (char32_t member : members)
            EXPECT_TRUE(isIn(charClass, member)) << uint32_t(member);
        for (char32_t other : others)
            EXPECT_FALSE(isIn(charClass, other)) << uint32_t(other);
        EXPECT_EQ(trimmed(QString::fromUtf16(text), charClass), QString::fromUtf16(trimmedText));
    }
}

TEST(Regex, FindsEveryMatchAtUtf16OffsetsIgnoresCaseOnRequestAndReplacesWithGroups)
{
    const Regex pattern(QStringLiteral("([가-힣]?)(\\d+)([a-z]?)"));
    const QString text = QStringLiteral("가12b 👍🏽3 x");
    const auto matches = pattern.all(text);
    ASSERT_EQ(matches.size(), 2);
    EXPECT_EQ(matches[0].text, QStringLiteral("가12b"));
    EXPECT_EQ(matches[0].groups, QString::fromUtf16(u"가,12,b").split(u','));
    EXPECT_EQ(matches[1].start, 9); // the emoji and its skin tone are four UTF-16 units
    EXPECT_EQ(matches[1].groups, QStringList({QString(), QStringLiteral("3"), QString()}));
    EXPECT_EQ(pattern.first(text).value_or(Regex::Match()).text, matches[0].text);

    EXPECT_FALSE(Regex(QStringLiteral("exam")).matches(QStringLiteral("The EXAM")));
    EXPECT_TRUE(Regex(QStringLiteral("exam"), Regex::Case::Insensitive).matches(QStringLiteral("The EXAM")));
    const Regex swap(QStringLiteral("(\\w+)@(\\w+)"));
    EXPECT_EQ(swap.replace(QStringLiteral("a@b, c@d"), QStringLiteral("$2@$1")), QStringLiteral("b@a, d@c"));
    const Regex broken(QStringLiteral("(unclosed"));
    EXPECT_FALSE(broken.isValid());
    EXPECT_TRUE(broken.all(QStringLiteral("unclosed")).isEmpty());
    EXPECT_FALSE(broken.first(QStringLiteral("unclosed")) || broken.matches(QStringLiteral("unclosed")));
    EXPECT_EQ(broken.replace(QStringLiteral("keep"), QStringLiteral("x")), QStringLiteral("keep"));
}

TEST(Json, CutsFromFirstToLastBracketAndReadsMembersByType)
{
    EXPECT_FALSE(Json::cut(QStringLiteral("no json here")));
    EXPECT_FALSE(Json::cut(QStringLiteral("} backwards {")));
    EXPECT_FALSE(Json::objectIn(QStringLiteral("{not json}")));
    EXPECT_EQ(Json::arrayIn(QStringLiteral("Here: [1, [2]] done")), QJsonArray({1, QJsonArray({2})}));
    EXPECT_FALSE(Json::parseObject("[1]"));
    EXPECT_FALSE(Json::parseArray("{}"));

    const auto object = Json::objectIn(QStringLiteral(R"JSON(Sure! {"s": "text", "n": 2.5, "i": 7, "big": 9007199254740993, "huge": 1e19, "b": true,
        "o": {}, "a": [1], "names": ["x", "y"], "mixed": ["x", 1], "null": null} Hope this helps.)JSON"));
    ASSERT_TRUE(object);
    // A member of another type counts as missing, as do null and an absent member.
    EXPECT_EQ(Json::string(*object, u"s"), QStringLiteral("text"));
    EXPECT_FALSE(Json::string(*object, u"n"));
    EXPECT_FALSE(Json::string(*object, u"null"));
    EXPECT_FALSE(Json::string(*object, u"absent"));
    EXPECT_EQ(Json::number(*object, u"n"), 2.5);
    EXPECT_FALSE(Json::number(*object, u"s"));
    EXPECT_EQ(Json::integer(*object, u"i"), 7);
    EXPECT_FALSE(Json::integer(*object, u"n"));
    EXPECT_TRUE(Json::integer(*object, u"big")) << "a large whole number is still a whole number";
    EXPECT_FALSE(Json::integer(*object, u"huge"));
    EXPECT_EQ(Json::boolean(*object, u"b"), true);
    EXPECT_FALSE(Json::boolean(*object, u"i"));
    EXPECT_EQ(Json::object(*object, u"o"), QJsonObject());
    EXPECT_FALSE(Json::object(*object, u"a"));
    EXPECT_EQ(Json::array(*object, u"a"), QJsonArray({1}));
    EXPECT_FALSE(Json::array(*object, u"o"));
    EXPECT_EQ(Json::strings(*object, u"names"), QStringList({QStringLiteral("x"), QStringLiteral("y")}));
    EXPECT_FALSE(Json::strings(*object, u"mixed"));
}

TEST(IsoDate, WholeSecondsInUtcWithZ)
{
    const QDateTime date(QDate(2026, 11, 23), QTime(9, 31, 45, 678), Qt::UTC);
    EXPECT_EQ(IsoDate::format(date), QStringLiteral("2026-11-23T09:31:45Z"));
    EXPECT_EQ(IsoDate::format(date.toTimeZone(QTimeZone(9 * 3600))), QStringLiteral("2026-11-23T09:31:45Z"));
    EXPECT_EQ(IsoDate::parse(QStringLiteral("2026-11-23T09:31:45Z")), date.addMSecs(-678));
    for (const char *bad : {"2026-11-23", "2026-11-23T09:31:45", "2026-11-23T09:31:45.5Z",
                            "2026-11-23T18:31:45+09:00", "2026-11-23T09:31:45Z\n",
                            "2026-13-01T00:00:00Z", "2026-02-30T00:00:00Z", " 2026-11-23T09:31:45Z", "", "x"})
        EXPECT_FALSE(IsoDate::parse(QString::fromLatin1(bad))) << bad;
}

TEST(Clock, SleepsEndAtTheirDeadlineOrAtOnceWhenStopped)
{
    ManualClock manual;
    std::jthread sleeper([&](std::stop_token stop) { EXPECT_TRUE(manual.sleep(10s, stop)); });
    ASSERT_TRUE(manual.waitForSleepers(1));
    manual.advance(9s);
    EXPECT_EQ(manual.sleepers(), 1);
    manual.advance(1s);
    sleeper.join();
    EXPECT_EQ(manual.now(), ManualClock().now().addSecs(10));

    SystemClock system;
    const auto before = system.elapsed();
    sleeper = std::jthread([&](std::stop_token stop) { EXPECT_FALSE(system.sleep(30s, stop)); });
    std::this_thread::sleep_for(30ms); // lets it fall asleep first
    sleeper.request_stop();
    sleeper.join();
    EXPECT_LT(system.elapsed() - before, 5s);
    EXPECT_FALSE(manual.sleep(1h, sleeper.get_stop_token()));
    EXPECT_TRUE(system.sleep(1ms, std::stop_token()));
}
