#include "text/Json.h"

#include <QJsonDocument>

#include <cmath>

namespace Text::Json {

std::optional<QString> cut(const QString &text, Bracket bracket)
{
    const QChar open = bracket == Bracket::Object ? u'{' : u'[';
    const QChar close = bracket == Bracket::Object ? u'}' : u']';
    const qsizetype first = text.indexOf(open);
    const qsizetype last = text.lastIndexOf(close);
    if (first < 0 || last < first)
        return std::nullopt;
    return text.mid(first, last - first + 1);
}

std::optional<QJsonObject> parseObject(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isObject())
        return std::nullopt;
    return document.object();
}

std::optional<QJsonArray> parseArray(const QByteArray &data)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(data, &error);
    if (error.error != QJsonParseError::NoError || !document.isArray())
        return std::nullopt;
    return document.array();
}

std::optional<QJsonObject> objectIn(const QString &text)
{
    const auto part = cut(text, Bracket::Object);
    return part ? parseObject(part->toUtf8()) : std::nullopt;
}

std::optional<QJsonArray> arrayIn(const QString &text)
{
    const auto part = cut(text, Bracket::Array);
    return part ? parseArray(part->toUtf8()) : std::nullopt;
}

std::optional<QString> string(const QJsonObject &object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<bool> boolean(const QJsonObject &object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

std::optional<double> number(const QJsonObject &object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isDouble() ? std::optional(value.toDouble()) : std::nullopt;
}

std::optional<qint64> integer(const QJsonObject &object, QStringView key)
{
    const auto value = number(object, key);
    // Any whole number a qint64 holds; beyond 2^53 the stored double is already rounded.
    constexpr double limit = 9.2233720368547758e18;
    if (!value || std::trunc(*value) != *value || *value < -limit || *value >= limit)
        return std::nullopt;
    return qint64(*value);
}

std::optional<QJsonObject> object(const QJsonObject &object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isObject() ? std::optional(value.toObject()) : std::nullopt;
}

std::optional<QJsonArray> array(const QJsonObject &object, QStringView key)
{
    const QJsonValue value = object.value(key);
    return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
}

std::optional<QStringList> strings(const QJsonObject &object, QStringView key)
{
    const auto values = array(object, key);
    if (!values)
        return std::nullopt;
    QStringList list;
    for (const QJsonValue &value : *values) {
        if (!value.isString())
            return std::nullopt;
        list << value.toString();
    }
    return list;
}

} // namespace Text::Json
