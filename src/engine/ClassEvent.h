#pragma once

// A dated event a teacher announced (an exam, a deadline, a cancelled class): what the engine
// finds during class and the report and calendar export use after it. A plain value.

#include <QJsonObject>
#include <QString>

#include <optional>

struct ClassEvent
{
    QString title;
    QString date;                 // "YYYY-MM-DD"
    std::optional<QString> time;  // "HH:mm"; none for an all-day event
    std::optional<QString> note;

    // Optional fields without a value are left out.
    QJsonObject toJson() const;
    // Strict: title and date must be strings; time and note strings, null or absent.
    static std::optional<ClassEvent> fromJson(const QJsonObject &object);

    friend bool operator==(const ClassEvent &, const ClassEvent &) = default;
};
