#include "engine/ClassEvent.h"

#include "text/Json.h"

namespace {

const QString titleKey = QStringLiteral("title");
const QString dateKey = QStringLiteral("date");
const QString timeKey = QStringLiteral("time");
const QString noteKey = QStringLiteral("note");

// An optional member may be absent or null; any other type fails the record.
bool readOptional(const QJsonObject &object, const QString &key, std::optional<QString> &field)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined() || value.isNull())
        return true;
    field = Text::Json::string(object, key);
    return field.has_value();
}

} // namespace

QJsonObject ClassEvent::toJson() const
{
    QJsonObject object{{titleKey, title}, {dateKey, date}};
    if (time)
        object.insert(timeKey, *time);
    if (note)
        object.insert(noteKey, *note);
    return object;
}

std::optional<ClassEvent> ClassEvent::fromJson(const QJsonObject &object)
{
    const auto title = Text::Json::string(object, titleKey);
    const auto date = Text::Json::string(object, dateKey);
    if (!title || !date)
        return std::nullopt;
    ClassEvent event{*title, *date, std::nullopt, std::nullopt};
    if (!readOptional(object, timeKey, event.time) || !readOptional(object, noteKey, event.note))
        return std::nullopt;
    return event;
}
