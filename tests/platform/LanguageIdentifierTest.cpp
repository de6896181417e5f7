#include "platform/LanguageIdentifier.h"

#include <gtest/gtest.h>

using LanguageIdentifier::dominant;
using LanguageIdentifier::languageCode;

namespace {

TEST(LanguageIdentifierTest, NamesTheDominantLanguageOfLectureLines)
{
    EXPECT_EQ(dominant(QStringLiteral("Today we talk about photosynthesis and the light reactions.")), u"en");
    EXPECT_EQ(dominant(QStringLiteral("오늘은 광합성에 대해 이야기하겠습니다")), u"ko");
    EXPECT_EQ(dominant(QStringLiteral("今日は光合成について話します")), u"ja");
    EXPECT_EQ(dominant(QStringLiteral("今天我们讨论光合作用")), u"zh-Hans");
    EXPECT_EQ(dominant(QStringLiteral("Aujourd'hui nous parlons de la photosynthèse.")), u"fr");
    EXPECT_EQ(dominant(QStringLiteral("Heute sprechen wir über die Photosynthese.")), u"de");
    EXPECT_EQ(dominant(QStringLiteral("今天我們討論光合作用的過程")), u"zh-Hant");
    EXPECT_EQ(dominant(QStringLiteral("1234 5678")), std::nullopt) << "digits give no clue";
    EXPECT_EQ(dominant(QStringLiteral("?!… ")), std::nullopt);
    EXPECT_EQ(dominant(QString()), std::nullopt);
}

TEST(LanguageIdentifierTest, RestrictsTheAnswerToTheCandidates)
{
    const QStringList classLanguages{QStringLiteral("ko-KR"), QStringLiteral("en-US"), QStringLiteral("zh-Hans")};
    EXPECT_EQ(dominant(QStringLiteral("The mitochondria is the powerhouse of the cell."), classLanguages), u"en");
    EXPECT_EQ(dominant(QStringLiteral("세포의 발전소는 미토콘드리아입니다"), classLanguages), u"ko");
    EXPECT_EQ(dominant(QStringLiteral("线粒体是细胞的动力工厂"), classLanguages), u"zh-Hans");
    EXPECT_EQ(dominant(QStringLiteral("Die Mitochondrien sind die Kraftwerke der Zelle."), classLanguages),
              std::nullopt)
        << "German is not a language of this class";
    // A mixed line goes to whichever candidate holds most of it.
    EXPECT_EQ(dominant(QStringLiteral("미토콘드리아는 세포의 발전소이고 에너지를 만듭니다 ATP"), classLanguages), u"ko");
    EXPECT_EQ(dominant(QStringLiteral("Les mitochondries produisent l'énergie de la cellule."),
                       {QStringLiteral("fr"), QStringLiteral("en")}),
              u"fr");
    EXPECT_EQ(dominant(QStringLiteral("12:30"), classLanguages), std::nullopt);
    EXPECT_EQ(dominant(QStringLiteral("The cell."), {}), std::nullopt) << "no candidates, no answer";
}

TEST(LanguageIdentifierTest, LanguageCodeIsTheFirstPartOfALocale)
{
    EXPECT_EQ(languageCode(QStringLiteral("ko-KR")), u"ko");
    EXPECT_EQ(languageCode(QStringLiteral("zh-Hans")), u"zh");
    EXPECT_EQ(languageCode(QStringLiteral("en_US")), u"en");
    EXPECT_EQ(languageCode(QStringLiteral("FR")), u"fr");
    EXPECT_EQ(languageCode(QString()), QString());
}

} // namespace
