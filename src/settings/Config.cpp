#include "settings/Config.h"

#include "text/AtomicFile.h"
#include "text/Json.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStandardPaths>

namespace {

namespace Json = Text::Json;

std::optional<QString> read(const QJsonObject &o, QStringView k, QString *) { return Json::string(o, k); }
std::optional<bool> read(const QJsonObject &o, QStringView k, bool *) { return Json::boolean(o, k); }
std::optional<double> read(const QJsonObject &o, QStringView k, double *) { return Json::number(o, k); }
std::optional<qint64> read(const QJsonObject &o, QStringView k, qint64 *) { return Json::integer(o, k); }
std::optional<QStringList> read(const QJsonObject &o, QStringView k, QStringList *) { return Json::strings(o, k); }

// Reads a required member into field; false when it is missing or of the wrong type.
template<typename T>
bool decode(const QJsonObject &object, QStringView key, T &field)
{
    auto value = read(object, key, static_cast<T *>(nullptr));
    if (!value)
        return false;
    field = std::move(*value);
    return true;
}

// Absent or null leaves the field without a value; a wrong type fails the record.
template<typename T>
bool decode(const QJsonObject &object, QStringView key, std::optional<T> &field)
{
    const QJsonValue raw = object.value(key);
    if (raw.isUndefined() || raw.isNull()) {
        field.reset();
        return true;
    }
    field = read(object, key, static_cast<T *>(nullptr));
    return field.has_value();
}

QJsonValue toValue(const QStringList &list)
{
    return QJsonArray::fromStringList(list);
}

template<typename T>
QJsonValue toValue(const T &value)
{
    return QJsonValue(value);
}

template<typename T>
void put(QJsonObject &object, const QString &key, const std::optional<T> &field)
{
    if (field)
        object.insert(key, toValue(*field));
}

template<typename T>
void put(QJsonObject &object, const QString &key, const T &field)
{
    object.insert(key, toValue(field));
}

// One list of the fields for both directions, in declared order.
template<typename Visit, typename Record>
bool visitFields(Record &c, Visit visit)
{
    return visit(u"provider", c.provider) && visit(u"model", c.model) && visit(u"effort", c.effort)
        && visit(u"sourceType", c.sourceType) && visit(u"app", c.app)
        && visit(u"lectureLanguage", c.lectureLanguage) && visit(u"answerLanguage", c.answerLanguage)
        && visit(u"extraLanguages", c.extraLanguages) && visit(u"answerQuestions", c.answerQuestions)
        && visit(u"recordExamNotes", c.recordExamNotes) && visit(u"recordKeyPoints", c.recordKeyPoints)
        && visit(u"recordVocabulary", c.recordVocabulary) && visit(u"layout", c.layout)
        && visit(u"theme", c.theme) && visit(u"panelFontSize", c.panelFontSize)
        && visit(u"panelBackground", c.panelBackground) && visit(u"audioQuality", c.audioQuality)
        && visit(u"storageLimitGB", c.storageLimitGB) && visit(u"builtinAI", c.builtinAI)
        && visit(u"keySource", c.keySource) && visit(u"recognizer", c.recognizer)
        && visit(u"cloudModel", c.cloudModel) && visit(u"refineAfterClass", c.refineAfterClass)
        && visit(u"emailReport", c.emailReport) && visit(u"aiCorrect", c.aiCorrect)
        && visit(u"autoClean", c.autoClean) && visit(u"overflow", c.overflow)
        && visit(u"cloudSync", c.cloudSync) && visit(u"summaryMinutes", c.summaryMinutes)
        && visit(u"profile", c.profile);
}

} // namespace

Config Config::load()
{
    QFile file(path());
    if (!file.open(QIODevice::ReadOnly))
        return Config();
    return fromJson(file.readAll()).value_or(Config());
}

bool Config::save() const
{
    QDir().mkpath(QFileInfo(path()).absolutePath());
    return Text::AtomicFile::write(path(), toJson());
}

QString Config::path()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + u'/' + QLatin1StringView(key)
        + u".json";
}

QByteArray Config::toJson() const
{
    QJsonObject object;
    visitFields(*this, [&](QStringView name, const auto &field) {
        put(object, name.toString(), field);
        return true;
    });
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<Config> Config::fromJson(const QByteArray &json)
{
    const auto object = Json::parseObject(json);
    if (!object)
        return std::nullopt;
    Config config;
    const bool complete = visitFields(config, [&](QStringView name, auto &field) {
        return decode(*object, name, field);
    });
    return complete ? std::optional(config) : std::nullopt;
}

QList<Language> Config::extras() const
{
    QList<Language> languages;
    const QString lectureId = lecture().id;
    for (const QString &id : extraLanguages.value_or(QStringList())) {
        const Language &language = Language::find(id);
        if (language.id != lectureId)
            languages << language;
    }
    return languages;
}

bool Config::usesQuilletAI(bool relayAvailable) const
{
    return relayAvailable && keySource.value_or(QStringLiteral("quillet")) == u"quillet";
}
