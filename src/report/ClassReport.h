#pragma once

// What the end of a class gives: the notes checked against the transcript, the dated events the
// teacher announced, and a mind map of the class. A plain value, stored in inbox messages and
// mailed; the same JSON form serves for the model's reply and for the inbox file.

#include "engine/ClassEvent.h"
#include "report/MindNode.h"

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

struct ClassReport
{
    QString notes;                   // Markdown
    QList<ClassEvent> events;        // may be empty; the key is always written
    std::optional<MindNode> mindmap;

    QJsonObject toJson() const;
    // Strict: a missing "notes" or "events", or any member of the wrong type, fails the whole.
    static std::optional<ClassReport> fromJson(const QJsonObject &object);

    friend bool operator==(const ClassReport &, const ClassReport &) = default;
};
