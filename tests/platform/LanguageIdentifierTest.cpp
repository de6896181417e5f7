#include "platform/LanguageIdentifier.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(LanguageIdentifierTest, NamesTheDominantLanguageAmongTheCandidates)
{
    const QStringList any;
    const QStringList lesson{u"ko-KR"_s, u"en-US"_s, u"zh-Hans"_s};
    const std::tuple<QString, QStringList, std::optional<QString>> cases[] = {
        {u"Today we talk about photosynthesis and the light reactions."_s, any, u"en"_s},
        {u"오늘은 광합성에 대해 이야기하겠습니다"_s, any, u"ko"_s},
        {u"今日は光合成について話します"_s, any, u"ja"_s},
        {u"今天我们讨论光合作用"_s, any, u"zh-Hans"_s},
        {u"Aujourd'hui nous parlons de la photosynthèse."_s, any, u"fr"_s},
        {u"Heute sprechen wir über die Photosynthese."_s, any, u"de"_s},
        {u"今天我們討論光合作用的過程"_s, any, u"zh-Hant"_s},
        {u"1234 5678"_s, any, std::nullopt},   // digits give no clue
        {u"?!… "_s, any, std::nullopt},
        {QString(), any, std::nullopt},
        {u"The mitochondria is the powerhouse of the cell."_s, lesson, u"en"_s},
        {u"세포의 발전소는 미토콘드리아입니다"_s, lesson, u"ko"_s},
        {u"线粒体是细胞的动力工厂"_s, lesson, u"zh-Hans"_s},
        {u"Die Mitochondrien sind die Kraftwerke der Zelle."_s, lesson, std::nullopt},   // not of this class
        // A mixed line goes to whichever candidate holds most of it.
        {u"미토콘드리아는 세포의 발전소이고 에너지를 만듭니다 ATP"_s, lesson, u"ko"_s},
        {u"Les mitochondries produisent l'énergie de la cellule."_s, {u"fr"_s, u"en"_s}, u"fr"_s},
        {u"12:30"_s, lesson, std::nullopt},
    };
    for (const auto &[text, candidates, language] : cases) {
        const auto named = candidates.isEmpty() ? LanguageIdentifier::dominant(text)
                                                : LanguageIdentifier::dominant(text, candidates);
        EXPECT_EQ(named, language) << text.toStdString();
    }
    EXPECT_EQ(LanguageIdentifier::dominant(u"The cell."_s, {}), std::nullopt) << "no candidates, no answer";
    for (const auto &[locale, code] : {std::pair{u"ko-KR"_s, u"ko"_s}, {u"zh-Hans"_s, u"zh"_s}, {u"en_US"_s, u"en"_s},
                                       {u"FR"_s, u"fr"_s}, {QString(), QString()}})
        EXPECT_EQ(LanguageIdentifier::languageCode(locale), code) << locale.toStdString();
}

} // namespace
