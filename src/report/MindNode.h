#pragma once

// One node of a class's mind map: a short label and its children in teaching order. A plain
// value; the same JSON form serves for the model's reply and for the inbox file.

#include <QJsonObject>
#include <QList>
#include <QString>

#include <optional>

struct MindNode
{
    QString t;                          // the label
    std::optional<QList<MindNode>> c;   // children; none for a leaf

    // Without children the "c" key is left out.
    QJsonObject toJson() const;
    // Strict: "t" must be a string, "c" a list of nodes, null or absent. A tree deeper than 64
    // levels fails too: no class has one, and it would only strain the stack.
    static std::optional<MindNode> fromJson(const QJsonObject &object);

    friend bool operator==(const MindNode &, const MindNode &) = default;
};
