#include "session/SessionData.h"

#include "session/SessionText.h"
#include "text/IsoDate.h"
#include "text/Json.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {

namespace Json = Text::Json;

std::optional<QDateTime> date(const QJsonObject &object, QStringView key)
{
    const auto text = Json::string(object, key);
    return text ? Text::IsoDate::parse(*text) : std::nullopt;
}

// An absent or null key leaves the field without a value; a present one must read.
template<typename T, typename Read>
bool optional(const QJsonObject &object, QStringView key, Read read, std::optional<T> &field)
{
    const QJsonValue raw = object.value(key);
    field.reset();
    if (raw.isUndefined() || raw.isNull())
        return true;
    field = read(object, key);
    return field.has_value();
}

// Every element must be an object that reads, or the whole list counts as missing.
template<typename T>
std::optional<QList<T>> list(const QJsonObject &object, QStringView key,
                             std::optional<T> (*element)(const QJsonObject &))
{
    const auto array = Json::array(object, key);
    if (!array)
        return std::nullopt;
    QList<T> items;
    items.reserve(array->size());
    for (const QJsonValue &value : *array) {
        auto item = value.isObject() ? element(value.toObject()) : std::nullopt;
        if (!item)
            return std::nullopt;
        items << std::move(*item);
    }
    return items;
}

// The string members named, in that order; no value when one is missing.
std::optional<QStringList> texts(const QJsonObject &object, std::initializer_list<QStringView> keys)
{
    QStringList values;
    for (QStringView key : keys) {
        auto value = Json::string(object, key);
        if (!value)
            return std::nullopt;
        values << std::move(*value);
    }
    return values;
}

// A line or a note: a time and two texts.
template<typename T>
std::optional<T> timed(const QJsonObject &object, QStringView first, QStringView second)
{
    const auto t = Json::number(object, u"t");
    const auto words = texts(object, {first, second});
    if (!t || !words)
        return std::nullopt;
    return T{*t, words->at(0), words->at(1)};
}

std::optional<SessionData::Line> line(const QJsonObject &object)
{
    return timed<SessionData::Line>(object, u"text", u"translation");
}

std::optional<SessionData::Note> note(const QJsonObject &object)
{
    return timed<SessionData::Note>(object, u"kind", u"text");
}

std::optional<SessionData::Term> term(const QJsonObject &object)
{
    const auto words = texts(object, {u"term", u"meaning", u"note"});
    if (!words)
        return std::nullopt;
    return SessionData::Term{words->at(0), words->at(1), words->at(2)};
}

QJsonObject toObject(const SessionData::Line &line)
{
    return {{QStringLiteral("t"), line.t}, {QStringLiteral("text"), line.text}, {QStringLiteral("translation"), line.translation}};
}

QJsonObject toObject(const SessionData::Note &note)
{
    return {{QStringLiteral("t"), note.t}, {QStringLiteral("kind"), note.kind}, {QStringLiteral("text"), note.text}};
}

QJsonObject toObject(const SessionData::Term &term)
{
    return {{QStringLiteral("term"), term.term}, {QStringLiteral("meaning"), term.meaning}, {QStringLiteral("note"), term.note}};
}

template<typename T>
QJsonArray toArray(const QList<T> &items)
{
    QJsonArray array;
    for (const T &item : items)
        array.append(toObject(item));
    return array;
}

} // namespace

SessionData SessionData::make(const QString &lecture, const QString &answer, const QDateTime &now)
{
    SessionData data;
    data.title = SessionText::defaultTitle(now);
    data.started = now;
    data.lecture = lecture;
    data.answer = answer;
    return data;
}

QByteArray SessionData::toJson() const
{
    QJsonObject object{
        {QStringLiteral("title"), title},
        {QStringLiteral("started"), Text::IsoDate::format(started)},
        {QStringLiteral("duration"), duration},
        {QStringLiteral("lecture"), lecture},
        {QStringLiteral("answer"), answer},
        {QStringLiteral("lines"), toArray(lines)},
        {QStringLiteral("notes"), toArray(notes)},
    };
    if (category)
        object.insert(QStringLiteral("category"), *category);
    if (audioRemoved)
        object.insert(QStringLiteral("audioRemoved"), *audioRemoved);
    if (deletedAt)
        object.insert(QStringLiteral("deletedAt"), Text::IsoDate::format(*deletedAt));
    if (refined)
        object.insert(QStringLiteral("refined"), *refined);
    if (summary)
        object.insert(QStringLiteral("summary"), *summary);
    if (vocabulary)
        object.insert(QStringLiteral("vocabulary"), toArray(*vocabulary));
    return QJsonDocument(object).toJson(QJsonDocument::Indented);
}

std::optional<SessionData> SessionData::fromJson(const QByteArray &json)
{
    const auto object = Json::parseObject(json);
    if (!object)
        return std::nullopt;
    auto title = Json::string(*object, u"title");
    auto started = date(*object, u"started");
    auto duration = Json::number(*object, u"duration");
    auto lecture = Json::string(*object, u"lecture");
    auto answer = Json::string(*object, u"answer");
    auto lines = list(*object, u"lines", &line);
    auto notes = list(*object, u"notes", &note);
    if (!title || !started || !duration || !lecture || !answer || !lines || !notes)
        return std::nullopt;

    SessionData data;
    data.title = std::move(*title);
    data.started = *started;
    data.duration = *duration;
    data.lecture = std::move(*lecture);
    data.answer = std::move(*answer);
    data.lines = std::move(*lines);
    data.notes = std::move(*notes);
    const auto terms = [](const QJsonObject &o, QStringView key) { return list(o, key, &term); };
    const bool complete = optional(*object, u"category", Json::string, data.category)
        && optional(*object, u"audioRemoved", Json::boolean, data.audioRemoved)
        && optional(*object, u"deletedAt", date, data.deletedAt)
        && optional(*object, u"refined", Json::boolean, data.refined)
        && optional(*object, u"summary", Json::string, data.summary)
        && optional(*object, u"vocabulary", terms, data.vocabulary);
    return complete ? std::optional(std::move(data)) : std::nullopt;
}
