#include "QtPrinters.h"
#include "app/Config.h"
#include "engine/Alternatives.h"
#include "engine/Batch.h"
#include "engine/LectureScript.h"
#include "engine/LineDetectors.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;
using namespace LineDetectors;
using namespace Qt::StringLiterals;

namespace {

Config lectureIn(const QString &language, const QString &sourceType)
{
    Config config;
    config.lectureLanguage = language;
    config.sourceType = sourceType;
    return config;
}

} // namespace

TEST(LineDetectors, SentencesNeedAClosingMark)
{
    EXPECT_TRUE(sentencesIn(u"no closing mark here"_s).isEmpty());
    EXPECT_EQ(sentencesIn(u"First one. Second one? tail"_s), QStringList({u"First one."_s, u" Second one?"_s}));
    // A question mark in the middle cuts the line.
    EXPECT_EQ(sentencesIn(u"a? b"_s), QStringList({u"a?"_s}));
    EXPECT_EQ(sentencesIn(u"这是什么？好的。"_s), QStringList({u"这是什么？"_s, u"好的。"_s}));
    EXPECT_TRUE(sentencesIn(u"...?!"_s).isEmpty());
}

TEST(LineDetectors, GarbageIsMarksAndClockTimes)
{
    EXPECT_TRUE(garbage().matches(u"The lecture starts at 12:30 sharp"_s));
    EXPECT_FALSE(garbage().matches(u"The lecture starts at 1:30 sharp"_s));
    for (const QString &mark : {u"#"_s, u"*"_s, u"※"_s, u"‡"_s, u"|"_s, u">"_s, u"☆"_s, u"¥"_s})
        EXPECT_TRUE(garbage().matches(u"text " + mark + u" text")) << mark.toStdString();
    EXPECT_FALSE(garbage().matches(u"A plain sentence, with commas; and dashes - fine."_s));
}

TEST(LineDetectors, RhetoricalNeedsTheMarkAtTheEnd)
{
    EXPECT_TRUE(rhetorical().matches(u"그렇죠?"_s));
    EXPECT_TRUE(rhetorical().matches(u"That is the answer, Right ?"_s));
    EXPECT_TRUE(rhetorical().matches(u"we move on, OKAY?"_s));
    EXPECT_TRUE(rhetorical().matches(u"다음 거 볼까요?"_s));
    EXPECT_FALSE(rhetorical().matches(u"그렇죠"_s));
    EXPECT_FALSE(rhetorical().matches(u"Right? Then what is next"_s));
}

TEST(LineDetectors, QuestionLikeWordsAndEndings)
{
    EXPECT_TRUE(questionLike().matches(u"What is entropy"_s));
    EXPECT_FALSE(questionLike().matches(u"So what is entropy"_s));
    EXPECT_FALSE(questionLike().matches(u"Whatever you think"_s));
    EXPECT_TRUE(questionLike().matches(u"anyone knows the answer"_s));
    EXPECT_TRUE(questionLike().matches(u"이게 뭘 의미하는지 알아요"_s));
    EXPECT_TRUE(questionLike().matches(u"이 식은 어떻게 풀까요 . "_s));
    EXPECT_TRUE(questionLike().matches(u"这是为什么。"_s));
    EXPECT_TRUE(questionLike().matches(u"これは何ですか。"_s));
    EXPECT_FALSE(questionLike().matches(u"这个很重要。"_s));
}

TEST(LineDetectors, NoticeKeywordsInManyScripts)
{
    for (const QString &text : {u"It is due Sept. 12th"_s, u"시험은 5월 3일입니다"_s, u"3 月 12 日に試験"_s,
                                u"Submit the HOMEWORK"_s, u"next Monday we meet"_s, u"期中考试"_s,
                                u"die Prüfung"_s, u"이클래스에 올렸어요"_s, u"check the LMS"_s})
        EXPECT_TRUE(noticeKeywords().matches(text)) << text.toStdString();
    EXPECT_FALSE(noticeKeywords().matches(u"The function converges"_s));

    // isNotice answers as the pattern does, long digit runs included.
    for (const QString &text : {u"제출은 12345월 3일"_s, u"报告 2026 年 10 月 1234567 日"_s, u"Sept 12345"_s,
                                u"sep 1234th"_s, u"Due Oct. 3rd"_s, u"Room 123456"_s, u"Version 𝟏𝟐𝟑𝟒𝟓月𝟗日"_s})
        EXPECT_EQ(isNotice(text), noticeKeywords().matches(text)) << text.toStdString();
    EXPECT_TRUE(isNotice(u"Chapter "_s + QString(10000, u'7') + u"月3日"_s));
    EXPECT_FALSE(isNotice(u"Chapter "_s + QString(10000, u'7')));
}

TEST(LineDetectors, ClassEndPhrases)
{
    for (const QString &text : {u"OK, see you next week"_s, u"That's all for today"_s, u"오늘은 여기까지"_s,
                                u"수고하셨습니다"_s, u"今天就到这里"_s, u"今日はここまで"_s, u"Class dismissed"_s})
        EXPECT_TRUE(classEnd().matches(text)) << text.toStdString();
    EXPECT_FALSE(classEnd().matches(u"See the next slide"_s));
}

TEST(LineDetectors, QuestionRules)
{
    // Finished sentences: a mark or a question word, more than five characters without blanks,
    // no tag question.
    EXPECT_TRUE(isQuestion(u"What is entropy"_s));
    EXPECT_TRUE(isQuestion(u"Entropy grows?"_s));
    EXPECT_FALSE(isQuestion(u"A b c?"_s));
    EXPECT_TRUE(isQuestion(u"A b cd ef?"_s));
    EXPECT_FALSE(isQuestion(u"It grows, right?"_s));
    EXPECT_FALSE(isQuestion(u"Entropy grows."_s));
    // Drafts: only a mark counts, and more than seven characters.
    EXPECT_FALSE(isDraftQuestion(u"What is entropy"_s));
    EXPECT_TRUE(isDraftQuestion(u"이게 무슨 뜻일까？"_s));
    EXPECT_FALSE(isDraftQuestion(u"Why so?"_s));
    EXPECT_FALSE(isDraftQuestion(u"Everyone got it, okay?"_s));
    EXPECT_EQ(nonBlankCount(u" a b\tc\u3000d "_s), 4);
    EXPECT_EQ(nonBlankCount(u"👩‍👩‍👧 e\u0301"_s), 2);
    EXPECT_TRUE(hasLetter(u"12 x"_s));
    EXPECT_FALSE(hasLetter(u"12 !? 😀"_s));
}

TEST(LineDetectors, AlternativesAnswerAsTheWholePattern)
{
    const Alternatives grouped(u"(cat|d[|(]g|b\\|d|(x|y)z)"_s, Text::Regex::Case::Insensitive);
    for (const QString &text : {u"CAT"_s, u"d|g"_s, u"d(g"_s, u"b|d"_s, u"yz"_s})
        EXPECT_TRUE(grouped.matches(text)) << text.toStdString();
    for (const QString &text : {u"dog"_s, u"bd"_s, u"y"_s, u""_s})
        EXPECT_FALSE(grouped.matches(text)) << text.toStdString();
    // Anchors keep their meaning in each alternative; groups side by side are not one group.
    const Alternatives anchored(u"(a)b$|^(c)"_s, Text::Regex::Case::Sensitive);
    EXPECT_TRUE(anchored.matches(u"xab"_s));
    EXPECT_TRUE(anchored.matches(u"cx"_s));
    EXPECT_FALSE(anchored.matches(u"abx"_s));
    EXPECT_FALSE(anchored.matches(u"xc"_s));

    const QStringList corpus{
        u"What is entropy"_s, u"So what is entropy"_s, u"Anyone?"_s, u"이게 뭘 의미하는지 알아요"_s,
        u"이 식은 어떻게 풀까요 . "_s, u"这是为什么。"_s, u"これは何ですか。"_s, u"这个很重要。"_s, u"Do you see it"_s,
        u"Whom shall we ask"_s, u"any one here"_s, u"그렇죠?"_s, u"설명해 볼 사람?"_s, u"今天讲什么"_s,
        u"The midterm exam is on Oct. 12th."_s, u"Due Sept. 12th"_s, u"시험은 5월 3일입니다"_s, u"3 月 12 日に試験"_s,
        u"next Monday we meet"_s, u"This week is busy"_s, u"제출 마감은 다음주"_s, u"Check e-Class and the lms"_s,
        u"The function converges"_s, u"ﬁnal exam"_s, u"FINAL EXAM"_s, u"Prüfung"_s, u"PRÜFUNG"_s,
        u"May 5"_s, u"may be 5"_s, u"March 1234"_s, u"Mar 12th"_s, u"Mar 12thx"_s, u"12:30"_s, u""_s,
        u"😀 emoji only"_s, QString(3000, u'가') + u"까요"_s};
    for (const QString &text : corpus) {
        EXPECT_EQ(isNotice(text), noticeKeywords().matches(text)) << text.toStdString();
        const bool asked = (text.endsWith(u'?') || questionLike().matches(text)) && nonBlankCount(text) > 5
                           && !rhetorical().matches(text);
        EXPECT_EQ(isQuestion(text), asked) << text.toStdString();
    }
}

TEST(LectureScript, RatioAndKeys)
{
    const LectureScript korean(lectureIn(u"Korean"_s, u"window"_s));
    EXPECT_EQ(korean.ratio(u"123 !?"_s), 0.0);
    EXPECT_EQ(korean.ratio(u""_s), 0.0);
    EXPECT_DOUBLE_EQ(korean.ratio(u"가나 abc"_s), 0.4);
    EXPECT_DOUBLE_EQ(korean.ratio(u"가나다 abc"_s), 0.5);
    EXPECT_TRUE(korean.read(u"only latin"_s).letters.isEmpty());
    // Punctuation, blanks, digits and letters of other scripts don't count in a key.
    EXPECT_EQ(korean.key(u"오늘 3장, 엔트로피(entropy)를 봅니다!"_s, 10), u"늘장엔트로피를봅니다"_s);
    EXPECT_EQ(korean.key(u"abc"_s, 10), QString());

    // A sound source takes any letter; marks are letters but not matched.
    const LectureScript any(lectureIn(u"Korean"_s, u"mic"_s));
    EXPECT_EQ(any.ratio(u"mixed 한글 and 中文"_s), 1.0);
    EXPECT_DOUBLE_EQ(any.ratio(u"e\u0301"_s), 0.5);
    EXPECT_EQ(any.ratio(u"😀😀 123"_s), 0.0);
    EXPECT_EQ(any.key(u"I'm here, 2 times!"_s, 20), u"Imheretimes"_s);

    // The letters are exactly the pattern's matches put together, for every language's script.
    for (const Language &language : Language::all()) {
        const Text::Regex pattern(language.script);
        const LectureScript script(lectureIn(language.id, u"window"_s));
        for (const QString &text : {u"Ünïcode ß 한글 漢字 かな カナ 😀 e\u0301 𝐀 123"_s, u"Ça-va? Straße!"_s, QString()}) {
            QString matched;
            for (const Text::Regex::Match &match : pattern.all(text))
                matched += match.text;
            EXPECT_EQ(script.read(text).letters, matched) << language.id.toStdString();
        }
    }

    const LectureScript japanese(lectureIn(u"Japanese"_s, u"window"_s));
    EXPECT_EQ(japanese.ratio(u"これは漢字"_s), 1.0);
    // A very long line is no trouble.
    const QString longLine = QString(10000, u'가');
    EXPECT_EQ(korean.ratio(longLine), 1.0);
    EXPECT_EQ(korean.key(longLine, 20), QString(20, u'가'));
}

TEST(Batch, SettleAndMaximumWait)
{
    Batch batch;
    EXPECT_FALSE(batch.ready(0ms, 0ms, 100s));
    batch.add(u"one"_s, 10s);
    batch.add(u"two"_s, 11s);
    EXPECT_EQ(batch.first, 10s);
    EXPECT_EQ(batch.last, 11s);
    EXPECT_FALSE(batch.ready(600ms, 2500ms, 11599ms));
    EXPECT_TRUE(batch.ready(600ms, 2500ms, 11600ms));
    // A teacher who keeps on: the maximum wait counts from the first item.
    batch.add(u"three"_s, 12200ms);
    EXPECT_FALSE(batch.ready(600ms, 2500ms, 12499ms));
    EXPECT_TRUE(batch.ready(600ms, 2500ms, 12500ms));
    EXPECT_EQ(batch.take(), QStringList({u"one"_s, u"two"_s, u"three"_s}));
    EXPECT_FALSE(batch.ready(0ms, 0ms, 100s));
    batch.add(u"four"_s, 20s);
    EXPECT_EQ(batch.first, 20s);
}
