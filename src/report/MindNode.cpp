#include "report/MindNode.h"

#include "text/Json.h"

#include <QJsonArray>

namespace {

const QString labelKey = QStringLiteral("t");
const QString childrenKey = QStringLiteral("c");

// Trees from a model can be arbitrarily deep; a deeper one is refused rather than risking the
// stack on decoding, drawing or freeing.
constexpr int maxDepth = 64;

std::optional<MindNode> decode(const QJsonObject &object, int depth)
{
    const auto label = Text::Json::string(object, labelKey);
    if (!label || depth > maxDepth)
        return std::nullopt;
    MindNode node{*label, std::nullopt};
    const QJsonValue children = object.value(childrenKey);
    if (children.isUndefined() || children.isNull())
        return node;
    if (!children.isArray())
        return std::nullopt;
    QList<MindNode> decoded;
    for (const QJsonValue &child : children.toArray()) {
        if (!child.isObject())
            return std::nullopt;
        auto next = decode(child.toObject(), depth + 1);
        if (!next)
            return std::nullopt;
        decoded.append(std::move(*next));
    }
    node.c = std::move(decoded);
    return node;
}

} // namespace

QJsonObject MindNode::toJson() const
{
    QJsonObject object{{labelKey, t}};
    if (c) {
        QJsonArray children;
        for (const MindNode &child : *c)
            children.append(child.toJson());
        object.insert(childrenKey, children);
    }
    return object;
}

std::optional<MindNode> MindNode::fromJson(const QJsonObject &object)
{
    return decode(object, 0);
}
