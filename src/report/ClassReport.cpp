#include "report/ClassReport.h"

#include "text/Json.h"

#include <QJsonArray>

namespace {

const QString notesKey = QStringLiteral("notes");
const QString eventsKey = QStringLiteral("events");
const QString mindmapKey = QStringLiteral("mindmap");

std::optional<QList<ClassEvent>> eventsIn(const QJsonObject &object)
{
    const auto array = Text::Json::array(object, eventsKey);
    if (!array)
        return std::nullopt;
    QList<ClassEvent> events;
    for (const QJsonValue &value : *array) {
        const auto event = value.isObject() ? ClassEvent::fromJson(value.toObject()) : std::nullopt;
        if (!event)
            return std::nullopt;
        events.append(*event);
    }
    return events;
}

} // namespace

QJsonObject ClassReport::toJson() const
{
    QJsonArray eventArray;
    for (const ClassEvent &event : events)
        eventArray.append(event.toJson());
    QJsonObject object{{notesKey, notes}, {eventsKey, eventArray}};
    if (mindmap)
        object.insert(mindmapKey, mindmap->toJson());
    return object;
}

std::optional<ClassReport> ClassReport::fromJson(const QJsonObject &object)
{
    const auto notes = Text::Json::string(object, notesKey);
    auto events = eventsIn(object);
    if (!notes || !events)
        return std::nullopt;
    ClassReport report{*notes, std::move(*events), std::nullopt};
    const QJsonValue mindmap = object.value(mindmapKey);
    if (mindmap.isUndefined() || mindmap.isNull())
        return report;
    report.mindmap = mindmap.isObject() ? MindNode::fromJson(mindmap.toObject()) : std::nullopt;
    if (!report.mindmap)
        return std::nullopt;
    return report;
}
