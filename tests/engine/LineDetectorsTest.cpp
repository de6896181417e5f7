#include "EngineFixture.h"
#include "engine/Alternatives.h"
#include "engine/Batch.h"
#include "engine/LectureScript.h"
#include "engine/LineDetectors.h"

using namespace std::chrono_literals;
using namespace LineDetectors;
using namespace Qt::StringLiterals;

TEST(LineDetectors, PatternsMatchAsWrittenAndTheFastTestsAgree)
{
    // (pattern, texts it matches, texts it doesn't)
    const QList<std::tuple<const Text::Regex &(*)(), QStringList, QStringList>> cases{
        // A clock time makes debris of a sentence whatever else it says; "1:30" is no clock time.
        {garbage,
         {u"The lecture starts at 12:30 sharp"_s, u"a # b"_s, u"a * b"_s, u"※"_s, u"‡"_s, u"a|b"_s, u">"_s,
          u"☆"_s, u"¥5"_s},
         {u"The lecture starts at 1:30 sharp"_s, u"A plain sentence, with commas; and dashes - fine."_s}},
        // A tag question needs the mark at the very end; blanks before it and any case are fine.
        {rhetorical,
         {u"그렇죠?"_s, u"That is the answer, Right ?"_s, u"we move on, OKAY?"_s, u"다음 거 볼까요?"_s},
         {u"그렇죠"_s, u"Right? Then what is next"_s}},
        // English question words only at the very start, as whole words.
        {questionLike,
         {u"What is entropy"_s, u"anyone knows the answer"_s, u"이게 뭘 의미하는지 알아요"_s, u"이 식은 어떻게 풀까요 . "_s,
          u"这是为什么。"_s, u"これは何ですか。"_s},
         {u"So what is entropy"_s, u"Whatever you think"_s, u"这个很重要。"_s}},
        {noticeKeywords,
         {u"It is due Sept. 12th"_s, u"시험은 5월 3일입니다"_s, u"3 月 12 日に試験"_s, u"Submit the HOMEWORK"_s,
          u"next Monday we meet"_s, u"期中考试"_s, u"die Prüfung"_s, u"이클래스에 올렸어요"_s, u"check the LMS"_s},
         {u"The function converges"_s}},
        {classEnd,
         {u"OK, see you next week"_s, u"That's all for today"_s, u"오늘은 여기까지"_s, u"수고하셨습니다"_s,
          u"今天就到这里"_s, u"今日はここまで"_s, u"Class dismissed"_s},
         {u"See the next slide"_s}},
    };
    // The notice test cuts long digit runs, and the three try one alternative at a time: they
    // must answer as the whole patterns do.
    QStringList corpus{
        u"Anyone?"_s, u"Do you see it"_s, u"Whom shall we ask"_s, u"any one here"_s, u"설명해 볼 사람?"_s,
        u"今天讲什么"_s, u"The midterm exam is on Oct. 12th."_s, u"This week is busy"_s, u"제출 마감은 다음주"_s,
        u"Check e-Class and the lms"_s, u"ﬁnal exam"_s, u"FINAL EXAM"_s, u"PRÜFUNG"_s, u"May 5"_s, u"may be 5"_s,
        u"March 1234"_s, u"Mar 12th"_s, u"Mar 12thx"_s, u""_s, u"😀 emoji only"_s, QString(3000, u'가') + u"까요"_s, u"제출은 12345월 3일"_s,
        u"报告 2026 年 10 月 1234567 日"_s, u"Sept 12345"_s, u"sep 1234th"_s, u"Due Oct. 3rd"_s, u"Room 123456"_s,
        u"Version 𝟏𝟐𝟑𝟒𝟓月𝟗日"_s, u"OK, SEE YOU ON Monday"_s, u"Thats it for today"_s, u"class is over"_s,
        u"We'll stop here"_s, u"下次课见"_s, u"오늘 수업은 여기서"_s, u"다음주에 봐요"_s, u"see you"_s, u"classes over"_s};
    for (const auto &[pattern, matching, other] : cases) {
        for (const QString &text : matching)
            EXPECT_TRUE(pattern().matches(text)) << text.toStdString();
        for (const QString &text : other)
            EXPECT_FALSE(pattern().matches(text)) << text.toStdString();
        corpus << matching << other;
    }
    for (const QString &text : std::as_const(corpus)) {
        EXPECT_EQ(isNotice(text), noticeKeywords().matches(text)) << text.toStdString();
        EXPECT_EQ(isClassEnd(text), classEnd().matches(text)) << text.toStdString();
        const bool asked = (text.endsWith(u'?') || questionLike().matches(text)) && nonBlankCount(text) > 5
                           && !rhetorical().matches(text);
        EXPECT_EQ(isQuestion(text), asked) << text.toStdString();
    }
    EXPECT_TRUE(isNotice(u"Chapter "_s + QString(10000, u'7') + u"月3日"_s));
    EXPECT_FALSE(isNotice(u"Chapter "_s + QString(10000, u'7')));
}

TEST(LineDetectors, SentencesAndQuestionRules)
{
    // Only what has a closing mark is a sentence; a mark in the middle of a line cuts it.
    EXPECT_TRUE(sentencesIn(u"no closing mark here"_s).isEmpty());
    EXPECT_EQ(sentencesIn(u"First one. Second one? tail"_s), QStringList({u"First one."_s, u" Second one?"_s}));
    EXPECT_EQ(sentencesIn(u"a? b"_s), QStringList({u"a?"_s}));
    EXPECT_EQ(sentencesIn(u"这是什么？好的。"_s), QStringList({u"这是什么？"_s, u"好的。"_s}));
    EXPECT_TRUE(sentencesIn(u"...?!"_s).isEmpty());

    // Finished sentences: a mark or a question word, more than five characters without blanks, no
    // tag question. Drafts: only a mark counts, and more than seven characters.
    const QList<std::tuple<QString, bool, bool>> questions{
        {u"What is entropy"_s, true, false},  {u"Entropy grows?"_s, true, true},  {u"A b c?"_s, false, false},
        {u"A b cd ef?"_s, true, false},         {u"It grows, right?"_s, false, false},
        {u"Entropy grows."_s, false, false},   {u"이게 무슨 뜻일까？"_s, true, true}, {u"Why so?"_s, true, false},
        {u"Everyone got it, okay?"_s, false, false}};
    for (const auto &[text, question, draftQuestion] : questions) {
        EXPECT_EQ(isQuestion(QString(text).replace(u'？', u'?')), question) << text.toStdString();
        EXPECT_EQ(isDraftQuestion(text), draftQuestion) << text.toStdString();
    }
    EXPECT_EQ(nonBlankCount(u" a b\tc\u3000d\n"_s), 4);
    EXPECT_EQ(nonBlankCount(u"👩‍👩‍👧 e\u0301"_s), 2);
    EXPECT_TRUE(hasLetter(u"12 x"_s));
    EXPECT_FALSE(hasLetter(u"12 !? 😀"_s));
}

TEST(LineDetectors, AlternativesSplitOnlyTheTopLevel)
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
}

TEST(LectureScript, RatioAndKeys)
{
    const LectureScript korean(classConfig(u"window"_s, u"Korean"_s));
    EXPECT_EQ(korean.ratio(u""_s), 0.0);
    // Punctuation, blanks, digits and letters of other scripts don't count in a key.
    EXPECT_EQ(korean.key(u"오늘 3장, 엔트로피(entropy)를 봅니다!"_s, 10), u"늘장엔트로피를봅니다"_s);
    EXPECT_EQ(korean.key(u"abc"_s, 10), QString());
    const QString longLine = QString(10000, u'가');
    EXPECT_EQ(korean.ratio(longLine), 1.0);
    EXPECT_EQ(korean.key(longLine, 20), QString(20, u'가'));

    // A sound source takes any letter; marks are letters but not matched.
    const LectureScript any(classConfig(u"mic"_s, u"Korean"_s));
    EXPECT_EQ(any.ratio(u"mixed 한글 and 中文"_s), 1.0);
    EXPECT_DOUBLE_EQ(any.ratio(u"e\u0301"_s), 0.5);
    EXPECT_EQ(any.ratio(u"😀😀 123"_s), 0.0);
    EXPECT_EQ(any.key(u"I'm here, 2 times!"_s, 20), u"Imheretimes"_s);

    // The letters are exactly the pattern's matches put together, for every language's script.
    for (const Language &language : Language::all()) {
        const Text::Regex pattern(language.script);
        const LectureScript script(classConfig(u"window"_s, language.id));
        for (const QString &text : {u"Ünïcode ß 한글 漢字 かな カナ 😀 e\u0301 𝐀 123"_s, u"Ça-va? Straße!"_s, QString()}) {
            QString matched;
            for (const Text::Regex::Match &match : pattern.all(text))
                matched += match.text;
            EXPECT_EQ(script.read(text).letters, matched) << language.id.toStdString();
        }
    }
}

TEST(Batch, SettleAndMaximumWait)
{
    Batch batch;
    EXPECT_FALSE(batch.ready(0ms, 0ms, 100s));
    batch.add(u"one"_s, 10s);
    batch.add(u"two"_s, 11s);
    EXPECT_FALSE(batch.ready(600ms, 2500ms, 11599ms));
    EXPECT_TRUE(batch.ready(600ms, 2500ms, 11600ms));
    // A teacher who keeps on: the maximum wait counts from the first item.
    batch.add(u"three"_s, 12200ms);
    EXPECT_FALSE(batch.ready(600ms, 2500ms, 12499ms));
    EXPECT_TRUE(batch.ready(600ms, 2500ms, 12500ms));
    EXPECT_EQ(batch.take(), QStringList({u"one"_s, u"two"_s, u"three"_s}));
    EXPECT_FALSE(batch.ready(0ms, 0ms, 100s));
    // Emptied, the next item starts the maximum wait anew.
    batch.add(u"four"_s, 20s);
    EXPECT_FALSE(batch.ready(600ms, 2500ms, 20500ms));
}
