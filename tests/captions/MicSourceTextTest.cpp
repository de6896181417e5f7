#include "captions/MicSource.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

using Pieces = QList<SpeechRecognizer::Piece>;

constexpr bool primary = true;
constexpr bool secondary = false;
constexpr bool latin = true;
constexpr bool notLatin = false;

TEST(MicSourceTextTest, CleanedKeepsBelievableRunsOfWords)
{
    // A Korean class: a stray English word of 0.7 from the lecture's recogniser is dropped and
    // splits the text; at 0.8 it stays.
    const Pieces korean{{QStringLiteral("오늘은"), 0.9}, {QStringLiteral(" API"), 0.7}, {QStringLiteral(" 배웁니다"), 0.9}};
    EXPECT_EQ(MicSource::cleaned(korean, primary, notLatin), u"오늘은 배웁니다");
    Pieces sure = korean;
    sure[1].confidence = 0.8;
    EXPECT_EQ(MicSource::cleaned(sure, primary, notLatin), u"오늘은 API 배웁니다");
    EXPECT_EQ(MicSource::cleaned({{QStringLiteral("café"), 0.5}}, primary, notLatin), u"café")
        << "letters beyond ASCII need no extra certainty";

    // A French class: 0.45 is enough and there is no Latin test.
    EXPECT_EQ(MicSource::cleaned({{QStringLiteral("Bonjour"), 0.45}, {QStringLiteral(" classe"), 0.44}}, primary, latin),
              u"Bonjour");

    // An extra language: 0.6, and three words with letters in a row.
    const Pieces extra{{QStringLiteral("오늘은"), 0.6}, {QStringLiteral(" 광합성을"), 0.9}, {QStringLiteral(" 배웁니다"), 0.9},
                       {QStringLiteral(" 그리고"), 0.59}, {QStringLiteral(" 시험"), 0.9}, {QStringLiteral(" 2"), 0.9},
                       {QStringLiteral(" 봅니다"), 0.9}};
    EXPECT_EQ(MicSource::cleaned(extra, secondary, latin), u"오늘은 광합성을 배웁니다")
        << "the run after the hole has only two words with letters";

    // Marks and digits ride along inside a run but never start one or count as words.
    const Pieces marks{{QStringLiteral(" ,"), 0.1}, {QStringLiteral("42"), 1.0}, {QStringLiteral("Read"), 0.9},
                       {QStringLiteral(" 42"), 0.1}, {QStringLiteral(","), 1.0}, {QStringLiteral("  pages\n"), 0.9},
                       {QStringLiteral(" ."), 1.0}};
    EXPECT_EQ(MicSource::cleaned(marks, primary, latin), u"Read 42, pages .");
    EXPECT_EQ(MicSource::cleaned({{QStringLiteral("42"), 1.0}, {QStringLiteral(" 17"), 1.0}}, primary, latin), QString());
    EXPECT_EQ(MicSource::cleaned({}, primary, latin), QString());
    EXPECT_EQ(MicSource::cleaned({{QStringLiteral("Hello"), 0.2}, {QStringLiteral(" there"), 0.2}}, primary, latin), QString());

    // Groups are joined by one blank.
    EXPECT_EQ(MicSource::cleaned({{QStringLiteral("one"), 0.9}, {QStringLiteral(" two"), 0.1}, {QStringLiteral(" three"), 0.9}},
                                 primary, latin),
              u"one three");
}

TEST(MicSourceTextTest, FitsJudgesOnlyTextsLongEnoughToJudge)
{
    EXPECT_FALSE(MicSource::fits(QStringLiteral("a"), QStringLiteral("ko-KR"))) << "one letter";
    EXPECT_FALSE(MicSource::fits(QStringLiteral("12 34 !"), QStringLiteral("en-US"))) << "no letters";
    EXPECT_TRUE(MicSource::fits(QStringLiteral("a dog"), QStringLiteral("ko-KR"))) << "under six letters";
    EXPECT_FALSE(MicSource::fits(QStringLiteral("the cats sat"), QStringLiteral("ko-KR")));
    EXPECT_TRUE(MicSource::fits(QStringLiteral("오늘은 광합성에 대해 배웁니다"), QStringLiteral("ko-KR")));
    EXPECT_TRUE(MicSource::fits(QStringLiteral("今天我们讨论光合作用"), QStringLiteral("zh-Hans"))) << "code zh";
    EXPECT_TRUE(MicSource::fits(QStringLiteral("今天我们讨论光合作用"), QStringLiteral("ja-JP")))
        << "Japanese in kanji reads as Chinese";
    EXPECT_FALSE(MicSource::fits(QStringLiteral("今天我们讨论光合作用"), QStringLiteral("ko-KR")));
    EXPECT_TRUE(MicSource::fits(QStringLiteral("Heute sprechen wir über Chemie"), QStringLiteral("de-DE")));
    EXPECT_FALSE(MicSource::fits(QStringLiteral("Heute sprechen wir über Chemie"), QStringLiteral("fr-FR")));
}

} // namespace
