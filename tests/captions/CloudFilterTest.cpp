#include "captions/CloudFilter.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

TEST(CloudFilterTest, AllowedWantsTheDominantLanguageToBeOneOfTheClass)
{
    const std::tuple<const char *, const char *, bool> cases[] = {
        {"en-US", "We begin with the chain rule.", true},
        {"en-US", "Heute beginnen wir mit Ableitungen.", false},
        // Mostly German: English among the likely languages is not enough.
        {"en-US",
         "Heute beginnen wir mit den Ableitungen und der Kettenregel für Funktionen mehrerer Veränderlicher im "
         "Raum, and then we talk about it.",
         false},
        {"en-US", "오늘은 미분을 배웁니다.", false},
        {"en-US", "3.14 + 2", true},   // no language to tell
        {"ko-KR en-US", "오늘은 미분을 배웁니다.", true},
        {"ko-KR en-US", "Any questions so far?", true},
        {"ko-KR en-US", "Gradient descent 알고리즘입니다.", true},
        {"ko-KR en-US", "日本語の大学の講義です。", false},
        {"ja-JP", "日本語の大学の講義です。", true},
        {"ja-JP", "カタカナ", true},
        {"ja-JP", "这是一堂中文大学课程，我们开始吧。", false},
        {"zh-Hans", "这是一堂中文大学课程，我们开始吧。", true},
    };
    for (const auto &[locales, text, expected] : cases) {
        const CloudFilter filter(QString::fromLatin1(locales).split(u' '), {});
        EXPECT_EQ(filter.allowed(QString::fromUtf8(text)), expected) << locales << ": " << text;
    }
}

TEST(CloudFilterTest, ScrapsAndKnownInventionsAreNoSentences)
{
    // Two words, or one of five letters or more ending in a closing mark.
    const std::pair<const char *, bool> scraps[] = {
        {"I do", true}, {" so  it ", true}, {"Okay.", false}, {"Exactly", false}, {"Exactly!", true},
        {"好的。", false}, {"我们开始上课。", true}, {"今日は晴れですか？", true}, {"我们开始上课", false},
        {"12345.", false}, {"", false},
    };
    for (const auto &[text, substantial] : scraps)
        EXPECT_EQ(CloudFilter::substantial(QString::fromUtf8(text)), substantial) << text;

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
    CloudFilter filter({QStringLiteral("en-US")}, QStringLiteral("A university lecture in English."));
    EXPECT_EQ(filter.kept(QStringLiteral("  A university lecture in English.  ")), QStringList());
    EXPECT_EQ(filter.kept(QStringLiteral("lecture in English. A university lecture in English.")), QStringList())
        << "parts of the prompt are the prompt too";
    EXPECT_EQ(filter.kept(QStringLiteral("... !! 42. The answer is 3.5 meters.")),
              (QStringList{QStringLiteral("The answer is 3."), QStringLiteral("5 meters.")}))
        << "parts without letters go; a decimal point splits";
    EXPECT_EQ(filter.kept(QStringLiteral("I do. I do. The answer is 3.")),
              (QStringList{QStringLiteral("I do."), QStringLiteral("I do.")}))
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
