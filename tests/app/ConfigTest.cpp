#include "app/Config.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

#include <gtest/gtest.h>

namespace {

QByteArray storedBlob()
{
    return QSettings().value(QString::fromLatin1(Config::key)).toByteArray();
}

void store(const QByteArray &blob)
{
    QSettings().setValue(QString::fromLatin1(Config::key), blob);
}

QJsonObject minimalRecord()
{
    return QJsonDocument::fromJson(R"JSON({"provider": "openai", "model": "gpt-5", "effort": "high",
        "sourceType": "window", "app": "Zoom", "lectureLanguage": "Korean",
        "answerLanguage": "English", "summaryMinutes": 9, "profile": "PhD student."})JSON").object();
}

class ConfigStore : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QSettings().clear();
        QSettings().remove(QStringLiteral("relay.url"));
    }
};

} // namespace

TEST_F(ConfigStore, FreshRecordRoundTripsThroughTheStore)
{
    EXPECT_EQ(Config::load(), Config());
    Config config;
    config.model = QStringLiteral("claude-sonnet-5-5");
    config.extraLanguages = QStringList{QStringLiteral("Japanese")};
    config.panelFontSize = 18.5;
    config.storageLimitGB = 20;
    config.save();
    EXPECT_EQ(Config::load(), config);

    const auto json = QJsonDocument::fromJson(storedBlob()).object();
    EXPECT_EQ(json.size(), 30);
    EXPECT_TRUE(json.value(QStringLiteral("panelFontSize")).isDouble());
    EXPECT_EQ(json.value(QStringLiteral("recognizer")).toString(), QStringLiteral("cloud"));
    EXPECT_FALSE(storedBlob().contains('\n'));
}

TEST_F(ConfigStore, MissingOptionalKeysStayAbsentAndAreNotWrittenBack)
{
    store(QJsonDocument(minimalRecord()).toJson());
    const Config loaded = Config::load();
    EXPECT_EQ(loaded.provider, QStringLiteral("openai"));
    EXPECT_EQ(loaded.summaryMinutes, 9);
    EXPECT_FALSE(loaded.recognizer);
    EXPECT_FALSE(loaded.keySource);
    EXPECT_FALSE(loaded.extraLanguages);
    EXPECT_EQ(loaded.recognizer.value_or(QStringLiteral("local")), QStringLiteral("local"));
    EXPECT_TRUE(loaded.extras().isEmpty());

    loaded.save();
    const auto json = QJsonDocument::fromJson(storedBlob()).object();
    EXPECT_EQ(json.size(), 9);
    EXPECT_FALSE(json.contains(QStringLiteral("recognizer")));
    EXPECT_EQ(Config::load(), loaded);

    QJsonObject withNull = minimalRecord();
    withNull.insert(QStringLiteral("theme"), QJsonValue::Null);
    withNull.insert(QStringLiteral("aiCorrect"), false);
    const auto decoded = Config::fromJson(QJsonDocument(withNull).toJson());
    ASSERT_TRUE(decoded);
    EXPECT_FALSE(decoded->theme);
    EXPECT_EQ(decoded->aiCorrect, false);
}

TEST_F(ConfigStore, ABrokenRecordLoadsFreshAndStaysInPlace)
{
    QJsonObject noProfile = minimalRecord();
    noProfile.remove(QStringLiteral("profile"));
    noProfile.insert(QStringLiteral("theme"), QStringLiteral("dark"));
    QJsonObject noMinutes = minimalRecord();
    noMinutes.remove(QStringLiteral("summaryMinutes"));
    QJsonObject wrongRequired = minimalRecord();
    wrongRequired.insert(QStringLiteral("summaryMinutes"), QStringLiteral("5"));
    QJsonObject wrongOptional = minimalRecord();
    wrongOptional.insert(QStringLiteral("answerQuestions"), QStringLiteral("yes"));
    QJsonObject fractionalInteger = minimalRecord();
    fractionalInteger.insert(QStringLiteral("storageLimitGB"), 2.5);
    QJsonObject mixedList = minimalRecord();
    mixedList.insert(QStringLiteral("extraLanguages"), QJsonArray({QStringLiteral("French"), 3}));

    const QList<QByteArray> broken = {
        QJsonDocument(noProfile).toJson(), QJsonDocument(noMinutes).toJson(),
        QJsonDocument(wrongRequired).toJson(), QJsonDocument(wrongOptional).toJson(),
        QJsonDocument(fractionalInteger).toJson(), QJsonDocument(mixedList).toJson(),
        "not json at all", "[1, 2, 3]", QByteArray("\xff\xfe\x00", 3)};
    for (const QByteArray &blob : broken) {
        store(blob);
        EXPECT_EQ(Config::load(), Config()) << blob.constData();
        EXPECT_EQ(storedBlob(), blob);
    }
}

TEST(Language, FindFallsBackToKoreanAndReadsChineseAsSimplified)
{
    ASSERT_EQ(Language::all().size(), 6);
    EXPECT_EQ(Language::find(QStringLiteral("Chinese")).id, QStringLiteral("Simplified Chinese"));
    EXPECT_EQ(Language::find(QStringLiteral("Japanese")).locale, QStringLiteral("ja-JP"));
    EXPECT_EQ(Language::find(QStringLiteral("Klingon")).id, QStringLiteral("Korean"));
    EXPECT_EQ(Language::find(QString()).id, QStringLiteral("Korean"));
    EXPECT_EQ(Language::find(QStringLiteral("english")).id, QStringLiteral("Korean"));
    EXPECT_EQ(Language::find(QStringLiteral("German")).label, QStringLiteral("德语"));
}

TEST(Config, ExtrasDropTheLectureLanguageAndKeepDuplicates)
{
    Config config;
    config.extraLanguages = QStringList{QStringLiteral("English"), QStringLiteral("French"), QStringLiteral("French")};
    const QList<Language> extras = config.extras();
    ASSERT_EQ(extras.size(), 2);
    EXPECT_EQ(extras[0].id, QStringLiteral("French"));
    EXPECT_EQ(extras[1].id, QStringLiteral("French"));

    config.lectureLanguage = QStringLiteral("Korean");
    config.extraLanguages = QStringList{QStringLiteral("Unknown"), QStringLiteral("Chinese")};
    ASSERT_EQ(config.extras().size(), 1);
    EXPECT_EQ(config.extras()[0].id, QStringLiteral("Simplified Chinese"));
}

TEST_F(ConfigStore, QuilletAIWantsTheRelayAndTheQuilletKeySource)
{
    Config config;
    EXPECT_FALSE(config.usesQuilletAI());  // no relay address
    QSettings().setValue(QStringLiteral("relay.url"), QStringLiteral("https://relay.example"));
    EXPECT_TRUE(config.usesQuilletAI());
    config.keySource.reset();
    EXPECT_TRUE(config.usesQuilletAI());
    config.keySource = QStringLiteral("own");
    EXPECT_FALSE(config.usesQuilletAI());
}

TEST(Config, EqualityCoversEveryField)
{
    const Config fresh;
    Config changed;
    changed.cloudSync = true;
    EXPECT_NE(changed, fresh);
    changed = fresh;
    changed.profile += u'.';
    EXPECT_NE(changed, fresh);
    changed = fresh;
    changed.recognizer.reset();
    EXPECT_NE(changed, fresh);
    changed = fresh;
    changed.panelFontSize = 15.0;
    EXPECT_EQ(changed, fresh);
}
