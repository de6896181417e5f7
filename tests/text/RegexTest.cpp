#include "text/Regex.h"

#include <gtest/gtest.h>

using Text::Regex;

TEST(Regex, FindsEveryMatchWithGroupsAndUtf16Offsets)
{
    const Regex pattern(QStringLiteral("(\\d+)([a-z]?)"));
    ASSERT_TRUE(pattern.isValid());
    const auto matches = pattern.all(QStringLiteral("가12b 나3 x"));
    ASSERT_EQ(matches.size(), 2);
    EXPECT_EQ(matches[0].text, QStringLiteral("12b"));
    EXPECT_EQ(matches[0].start, 1);
    EXPECT_EQ(matches[0].groups, QStringList({QStringLiteral("12"), QStringLiteral("b")}));
    EXPECT_EQ(matches[1].text, QStringLiteral("3"));
    EXPECT_EQ(matches[1].start, 6);
    EXPECT_EQ(matches[1].groups[1], QString());
    EXPECT_TRUE(pattern.all(QStringLiteral("no digits")).isEmpty());
}

TEST(Regex, CaseModesUnicodeClassesAndEmojiOffsets)
{
    const Regex sensitive(QStringLiteral("exam"));
    const Regex insensitive(QStringLiteral("exam"), Regex::Case::Insensitive);
    EXPECT_FALSE(sensitive.matches(QStringLiteral("The EXAM is Friday")));
    EXPECT_TRUE(insensitive.matches(QStringLiteral("The EXAM is Friday")));

    const Regex hangul(QStringLiteral("[가-힣]+"));
    const auto words = hangul.all(QStringLiteral("👍🏽 시험은 금요일"));
    ASSERT_EQ(words.size(), 2);
    EXPECT_EQ(words[0].start, 5);  // the emoji and its modifier are four UTF-16 units, then a space
    EXPECT_EQ(words[1].text, QStringLiteral("금요일"));
}

TEST(Regex, ReplacesWithGroupReferences)
{
    const Regex swap(QStringLiteral("(\\w+)@(\\w+)"));
    EXPECT_EQ(swap.replace(QStringLiteral("a@b, c@d"), QStringLiteral("$2@$1")), QStringLiteral("b@a, d@c"));
    EXPECT_EQ(swap.replace(QStringLiteral("none"), QStringLiteral("$1")), QStringLiteral("none"));
}

TEST(Regex, InvalidPatternMatchesNothing)
{
    const Regex broken(QStringLiteral("(unclosed"));
    EXPECT_FALSE(broken.isValid());
    EXPECT_TRUE(broken.all(QStringLiteral("unclosed")).isEmpty());
    EXPECT_FALSE(broken.first(QStringLiteral("unclosed")));
    EXPECT_EQ(broken.replace(QStringLiteral("keep"), QStringLiteral("x")), QStringLiteral("keep"));
}
