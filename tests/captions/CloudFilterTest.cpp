#include "captions/CloudFilter.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

QStringList locales(std::initializer_list<const char *> ids)
{
    QStringList list;
    for (const char *id : ids)
        list << QString::fromLatin1(id);
    return list;
}

TEST(CloudFilterTest, AllowedKeepsTheLanguagesOfTheClass)
{
    const CloudFilter english(locales({"en-US"}), {});
    EXPECT_TRUE(english.allowed(QStringLiteral("We begin with the chain rule.")));
    EXPECT_FALSE(english.allowed(QStringLiteral("Heute beginnen wir mit Ableitungen.")));
    EXPECT_FALSE(english.allowed(QStringLiteral("Heute beginnen wir mit den Ableitungen und der Kettenregel für "
                                                "Funktionen mehrerer Veränderlicher im Raum, and then we talk about it.")))
        << "mostly German: English among the likely languages is not enough";
    EXPECT_FALSE(english.allowed(QStringLiteral(u"오늘은 미분을 배웁니다.")));
    EXPECT_TRUE(english.allowed(QStringLiteral("3.14 + 2")) ) << "no language to tell";

    const CloudFilter korean(locales({"ko-KR", "en-US"}), {});
    EXPECT_TRUE(korean.allowed(QStringLiteral(u"오늘은 미분을 배웁니다.")));
    EXPECT_TRUE(korean.allowed(QStringLiteral("Any questions so far?")));
    EXPECT_TRUE(korean.allowed(QStringLiteral(u"Gradient descent 알고리즘입니다.")));
    EXPECT_FALSE(korean.allowed(QStringLiteral(u"日本語の大学の講義です。")));

    const CloudFilter japanese(locales({"ja-JP"}), {});
    EXPECT_TRUE(japanese.allowed(QStringLiteral(u"日本語の大学の講義です。")));
    EXPECT_TRUE(japanese.allowed(QStringLiteral(u"カタカナ")));
    EXPECT_FALSE(japanese.allowed(QStringLiteral(u"这是一堂中文大学课程，我们开始吧。")));

    const CloudFilter chinese(locales({"zh-Hans"}), {});
    EXPECT_TRUE(chinese.allowed(QStringLiteral(u"这是一堂中文大学课程，我们开始吧。")));
}

TEST(CloudFilterTest, SubstantialWantsTwoWordsOrAFinishedLongWord)
{
    EXPECT_TRUE(CloudFilter::substantial(QStringLiteral("I do")));
    EXPECT_TRUE(CloudFilter::substantial(QStringLiteral(" so  it ")));
    EXPECT_FALSE(CloudFilter::substantial(QStringLiteral("Okay.")));
    EXPECT_FALSE(CloudFilter::substantial(QStringLiteral("Exactly")));
    EXPECT_TRUE(CloudFilter::substantial(QStringLiteral("Exactly!")));
    EXPECT_FALSE(CloudFilter::substantial(QStringLiteral(u"好的。")));
    EXPECT_TRUE(CloudFilter::substantial(QStringLiteral(u"我们开始上课。")));
    EXPECT_TRUE(CloudFilter::substantial(QStringLiteral(u"今日は晴れですか？")));
    EXPECT_FALSE(CloudFilter::substantial(QStringLiteral(u"我们开始上课")));
    EXPECT_FALSE(CloudFilter::substantial(QStringLiteral("12345.")));
    EXPECT_FALSE(CloudFilter::substantial(QString()));
}

TEST(CloudFilterTest, InventedMatchesTheKnownInventionsAnywhereInAnyCase)
{
    for (const char *made : {"Context: a lecture", "TRANSCRIPT：", "Subtitle: none", "captions :", "## Notes",
                             "so thanks for watching", "Thank you for watching", "Thank for watching",
                             "please like and subscribe", "Please Subscribe!", "Subtitles by someone",
                             "시청해 주셔서 감사합니다", "시청해주셔서 감사", "구독과 좋아요", "mbc 뉴스",
                             "字幕由", "字幕提供", "字幕志愿者", "请不吝点赞", "ご視聴ありがとうございました",
                             "チャンネル登録"})
        EXPECT_TRUE(CloudFilter::invented(QString::fromUtf8(made))) << made;
    for (const char *real : {"The context: a lecture", "# one hash", "thanks for coming", "We watch the graph.",
                             "This subtitle is long"})
        EXPECT_FALSE(CloudFilter::invented(QString::fromUtf8(real))) << real;
}

TEST(CloudFilterTest, KeptDropsScrapsThePromptAndRecentRepeats)
{
    CloudFilter filter(locales({"en-US"}), QStringLiteral("A university lecture in English."));
    EXPECT_EQ(filter.kept(QStringLiteral("  A university lecture in English.  ")), QStringList());
    EXPECT_EQ(filter.kept(QStringLiteral("lecture in English. A university lecture in English.")), QStringList())
        << "parts of the prompt are the prompt too";
    EXPECT_EQ(filter.kept(QStringLiteral("... !! 42. The answer is 3.5 meters.")),
              (QStringList{QStringLiteral("The answer is 3."), QStringLiteral("5 meters.")}))
        << "parts without letters go; a decimal point splits";
    EXPECT_EQ(filter.kept(QStringLiteral("I do. I do. The answer is 3.")), (QStringList{QStringLiteral("I do."), QStringLiteral("I do.")}))
        << "a key of three characters isn't compared";
    EXPECT_EQ(filter.kept(QStringLiteral("The derivative measures change.")),
              QStringList{QStringLiteral("The derivative measures change.")});
    EXPECT_EQ(filter.kept(QStringLiteral("So the derivative measures change, right?")), QStringList())
        << "a longer sentence holding a recent one";
    EXPECT_EQ(filter.kept(QStringLiteral("The derivative!")), QStringList()) << "held by a recent one";
    EXPECT_EQ(filter.kept(QStringLiteral("Go on. Go on!")), QStringList{QStringLiteral("Go on.")})
        << "equal keys of four characters";
    EXPECT_EQ(filter.kept(QStringLiteral("Go on now.")), QStringList{QStringLiteral("Go on now.")})
        << "containment counts only above seven characters";

    // Thirty newer sentences push the first one out of the recent list.
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(filter.kept(QStringLiteral("Line number %1 here.").arg(QChar(u'a' + i % 26) + QString::number(i))).size(), 1);
    EXPECT_EQ(filter.kept(QStringLiteral("The answer is 3.")), QStringList{QStringLiteral("The answer is 3.")});
}

} // namespace
