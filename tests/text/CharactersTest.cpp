#include "text/Characters.h"

#include <gtest/gtest.h>

using namespace Text;

TEST(Characters, CountsUserPerceivedCharacters)
{
    EXPECT_EQ(characterCount(QString()), 0);
    EXPECT_EQ(characterCount(QStringLiteral("hello")), 5);
    EXPECT_EQ(characterCount(QStringLiteral("안녕하세요")), 5);
    // Hangul written as conjoining jamo: two syllables of two and three jamo each.
    EXPECT_EQ(characterCount(QString::fromUtf16(u"\u1100\u1161\u1102\u1161\u11AB")), 2);
    EXPECT_EQ(characterCount(QStringLiteral("漢字かなカナ")), 6);
    EXPECT_EQ(characterCount(QStringLiteral("👍🏽👨‍👩‍👧")), 2);
    EXPECT_EQ(characterCount(QString::fromUtf16(u"e\u0301te\u0301")), 3);
    EXPECT_EQ(characterCount(QStringLiteral("a\r\nb")), 3);
    EXPECT_EQ(characterCount(QStringLiteral("🇰🇷🇫🇷")), 2);
}

TEST(Characters, SplitsIntoUserPerceivedCharacters)
{
    EXPECT_EQ(characters(QString()), QStringList());
    EXPECT_EQ(characters(QStringLiteral("a b")), (QStringList{QStringLiteral("a"), QStringLiteral(" "), QStringLiteral("b")}));
    EXPECT_EQ(characters(QStringLiteral("ab👍🏽c\u0301\r\n")),
              (QStringList{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("👍🏽"), QStringLiteral("c\u0301"),
                           QStringLiteral("\r\n")}));
    EXPECT_EQ(characters(QStringLiteral("안녕")), (QStringList{QStringLiteral("안"), QStringLiteral("녕")}));
}

TEST(Characters, PrefixAndSuffixNeverSplitACharacter)
{
    const QString text = QStringLiteral("ab👍🏽c\u0301d");
    EXPECT_EQ(prefix(text, 3), QStringLiteral("ab👍🏽"));
    EXPECT_EQ(prefix(text, 4), QStringLiteral("ab👍🏽c\u0301"));
    EXPECT_EQ(suffix(text, 2), QStringLiteral("c\u0301d"));
    EXPECT_EQ(suffix(text, 3), QStringLiteral("👍🏽c\u0301d"));
    EXPECT_EQ(prefix(text, 99), text);
    EXPECT_EQ(suffix(text, 99), text);
    EXPECT_EQ(prefix(text, 0), QString());
    EXPECT_EQ(suffix(text, -1), QString());
    EXPECT_EQ(prefix(QStringLiteral("plain"), 2), QStringLiteral("pl"));
    EXPECT_EQ(suffix(QStringLiteral("plain"), 2), QStringLiteral("in"));
}

TEST(Characters, ClassesFollowTheirUnicodeCategories)
{
    for (char32_t letter : {U'a', U'가', U'漢', U'か', U'é', U'\u0301', U'\u093F'})
        EXPECT_TRUE(isIn(CharClass::Letters, letter)) << uint32_t(letter);
    for (char32_t other : {U'1', U' ', U'!', U'👍', U'\u3000'})
        EXPECT_FALSE(isIn(CharClass::Letters, other)) << uint32_t(other);

    EXPECT_TRUE(isIn(CharClass::DecimalDigits, U'7'));
    EXPECT_TRUE(isIn(CharClass::DecimalDigits, U'٣'));
    EXPECT_FALSE(isIn(CharClass::DecimalDigits, U'½'));
    EXPECT_FALSE(isIn(CharClass::DecimalDigits, U'三'));

    for (char32_t space : {U' ', U'\t', U'\u00A0', U'\u3000'})
        EXPECT_TRUE(isIn(CharClass::Whitespaces, space)) << uint32_t(space);
    for (char32_t newline : {U'\n', U'\r', U'\u000B', U'\u000C', U'\u0085'}) {
        EXPECT_FALSE(isIn(CharClass::Whitespaces, newline)) << uint32_t(newline);
        EXPECT_TRUE(isIn(CharClass::WhitespacesAndNewlines, newline)) << uint32_t(newline);
    }
    EXPECT_FALSE(isIn(CharClass::WhitespacesAndNewlines, U'\u2028'));
}

TEST(Characters, TrimsByClass)
{
    EXPECT_EQ(trimmed(QString::fromUtf16(u"\u0085 \t 안녕 \u3000\n")), QStringLiteral("안녕"));
    EXPECT_EQ(trimmed(QStringLiteral(" a\n"), CharClass::Whitespaces), QStringLiteral("a\n"));
    EXPECT_EQ(trimmed(QStringLiteral("12ab34"), CharClass::DecimalDigits), QStringLiteral("ab"));
    EXPECT_EQ(trimmed(QStringLiteral("  \n ")), QString());
    EXPECT_EQ(trimmed(QStringLiteral("👍 ok 👍")), QStringLiteral("👍 ok 👍"));
}
