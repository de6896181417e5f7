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
    const std::pair<const char *, const char *> texts[] = {
        {"  A university lecture in English.  ", ""},
        {"lecture in English. A university lecture in English.", ""},   // parts of the prompt too
        {"... !! 42. The answer is 3.5 meters.", "The answer is 3.|5 meters."},   // letters needed; 3.5 splits
        {"I do. I do. The answer is 3.", "I do.|I do."},   // a key of three characters isn't compared
        {"The derivative measures change.", "The derivative measures change."},
        {"So the derivative measures change, right?", ""},   // it holds a recent one
        {"The derivative!", ""},   // a recent one holds it
        {"Go on. Go on!", "Go on."},   // equal keys of four characters
        {"Go on now.", "Go on now."},   // containment counts only above seven characters
    };
    for (const auto &[text, kept] : texts)
        EXPECT_EQ(filter.kept(QString::fromUtf8(text)).join(u'|'), QString::fromUtf8(kept)) << text;

    // The recent list holds thirty sentences: the thirty newer ones push the older ones out.
    for (int i = 0; i < 30; ++i)
        EXPECT_EQ(filter.kept(QStringLiteral("Line number %1 here.").arg(i)).size(), 1);
    EXPECT_EQ(filter.kept(QStringLiteral("Line number 0 here. Go on now.")).join(u'|'), QStringLiteral("Go on now."));
}

} // namespace
