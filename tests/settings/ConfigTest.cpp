#include "settings/Config.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <csignal>

#include <sys/resource.h>

// The stored record as it is on disk, and a way to put any bytes there.
static QByteArray stored()
{
    QFile file(Config::path());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

static void store(const QByteArray &blob)
{
    QDir().mkpath(QFileInfo(Config::path()).absolutePath());
    QFile file(Config::path());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(blob);
}
const QStringList requiredKeys = QString::fromLatin1(
    "provider model effort sourceType app lectureLanguage answerLanguage summaryMinutes profile").split(u' ');

static QJsonObject freshRecord()
{
    return QJsonDocument::fromJson(Config().toJson()).object();
}

// The fresh record cut to its required keys, then key set to value (an undefined value removes it).
static QByteArray minimalRecordWith(const QString &key = {}, const QJsonValue &value = QJsonValue::Undefined)
{
    QJsonObject record;
    for (const QString &required : requiredKeys)
        record.insert(required, freshRecord().value(required));
    record.insert(key, value);
    return QJsonDocument(record).toJson();
}

TEST(Config, EveryFieldIsStoredReadBackAndCountsForEquality)
{
    QFile::remove(Config::path());
    EXPECT_EQ(Config::load(), Config());
    const QJsonObject fresh = freshRecord();
    ASSERT_EQ(fresh.size(), 30);
    for (auto field = fresh.begin(); field != fresh.end(); ++field) {
        SCOPED_TRACE(field.key().toStdString());
        const QJsonValue value = field.value();
        QJsonObject edited = fresh;
        edited.insert(field.key(), value.isBool()     ? QJsonValue(!value.toBool())
                                   : value.isDouble() ? QJsonValue(value.toDouble() + 1)
                                   : value.isArray()  ? QJsonValue(QJsonArray{QStringLiteral("French")})
                                                      : QJsonValue(value.toString() + u'x'));
        const auto decoded = Config::fromJson(QJsonDocument(edited).toJson());
        ASSERT_TRUE(decoded);
        EXPECT_NE(*decoded, Config());
        EXPECT_TRUE(decoded->save());
        EXPECT_EQ(QJsonDocument::fromJson(stored()).object(), edited);
    }

    // Optional keys may be absent or null; saved again, the record still lacks them.
    store(minimalRecordWith(QStringLiteral("theme"), QJsonValue::Null));
    const Config minimal = Config::load();
    EXPECT_TRUE(minimal.extras().isEmpty());
    minimal.save();
    EXPECT_EQ(QJsonDocument::fromJson(stored()), QJsonDocument::fromJson(minimalRecordWith()));

    // A save that can't be whole (a disk that fills up) leaves the last good record in place.
    Config longer = minimal;
    longer.profile = QString(20'000, u'p');
    rlimit usual{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &usual), 0);
    const rlimit small{4'096, usual.rlim_max};
    const auto usualHandler = std::signal(SIGXFSZ, SIG_IGN);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const bool saved = longer.save();
    ::setrlimit(RLIMIT_FSIZE, &usual);
    std::signal(SIGXFSZ, usualHandler);
    EXPECT_FALSE(saved);
    EXPECT_EQ(Config::load(), minimal);
}

TEST(Config, ABrokenRecordLoadsFreshAndStaysInPlace)
{
    QList<QByteArray> broken = {
        "not json at all", "[1, 2, 3]", QByteArray("\xff\xfe\x00", 3),
        minimalRecordWith(QStringLiteral("answerQuestions"), QStringLiteral("yes")),
        minimalRecordWith(QStringLiteral("storageLimitGB"), 2.5),
        minimalRecordWith(QStringLiteral("extraLanguages"), QJsonArray{QStringLiteral("French"), 3}),
    };
    for (const QString &key : requiredKeys)
        broken << minimalRecordWith(key) << minimalRecordWith(key, true);
    for (const QByteArray &blob : broken) {
        store(blob);
        EXPECT_EQ(Config::load(), Config()) << blob.constData();
        EXPECT_EQ(stored(), blob);
    }
}

TEST(Config, LanguagesAndTheRelayChoice)
{
    for (const Language &language : Language::all())
        EXPECT_EQ(Language::find(language.id), language);
    EXPECT_EQ(Language::find(QStringLiteral("Chinese")).id, QStringLiteral("Simplified Chinese"));
    for (const QString &unknown : {QStringLiteral("Klingon"), QString(), QStringLiteral("english")})
        EXPECT_EQ(Language::find(unknown), Language::all().front()) << unknown.toStdString();

    Config config; // extras keep their order and duplicates and leave out the lecture language, English
    config.extraLanguages = QString::fromLatin1("French,English,Chinese,French,Unknown").split(u',');
    QStringList extras;
    for (const Language &language : config.extras())
        extras << language.id;
    EXPECT_EQ(extras, QString::fromLatin1("French,Simplified Chinese,French,Korean").split(u','));

    EXPECT_FALSE(config.usesQuilletAI(false));
    EXPECT_TRUE(config.usesQuilletAI(true));
    config.keySource.reset();
    EXPECT_TRUE(config.usesQuilletAI(true));
    config.keySource = QStringLiteral("own");
    EXPECT_FALSE(config.usesQuilletAI(true));
}
