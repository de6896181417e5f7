#pragma once

// JSON as this product reads it: model replies are cut from the first to the last bracket
// before parsing, so fences and chatter around them do no harm; every member read tests the
// type, and a member of the wrong type counts as missing.

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>

namespace Text::Json {

enum class Bracket { Object, Array };

// The text from the first opening to the last closing bracket of the kind, or nothing.
std::optional<QString> cut(const QString &text, Bracket bracket = Bracket::Object);

std::optional<QJsonObject> parseObject(const QByteArray &data);
std::optional<QJsonArray> parseArray(const QByteArray &data);
// cut() and parse in one step, for model replies.
std::optional<QJsonObject> objectIn(const QString &text);
std::optional<QJsonArray> arrayIn(const QString &text);

std::optional<QString> string(const QJsonObject &object, QStringView key);
std::optional<bool> boolean(const QJsonObject &object, QStringView key);
std::optional<double> number(const QJsonObject &object, QStringView key);
// A number with no fractional part that fits in 64 bits.
std::optional<qint64> integer(const QJsonObject &object, QStringView key);
std::optional<QJsonObject> object(const QJsonObject &object, QStringView key);
std::optional<QJsonArray> array(const QJsonObject &object, QStringView key);
// Every element must be a string, or the whole member counts as missing.
std::optional<QStringList> strings(const QJsonObject &object, QStringView key);

} // namespace Text::Json
