#pragma once

// One-colour pixel sprites that stand in for system symbols on every icon button. Cells are hard
// squares (anti-aliasing off) at any size; images are template masks, so a button tints them with
// its own colour. The tables are built once on first use; images are drawn on the main thread.

#include <QHash>
#include <QIcon>
#include <QImage>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace PixelIcon {

struct Sprite
{
    QString name;
    QString symbol; // the system symbol it answers for; empty for sprites reached by name only
    QStringList rows; // top first; '#' is a painted cell, anything else empty
};

// All 42 sprites, in catalogue order.
const std::vector<Sprite> &sprites();
// Sprite name to rows.
const QHash<QString, QStringList> &art();
// System symbol name to sprite name.
const QHash<QString, QString> &symbols();

// Black cells on transparent, centred with the sprite's shape kept; nothing for an unknown name.
std::optional<QImage> image(const QString &name, int size = 14);
// The sprite answering for a system symbol, as a mask icon; else the desktop theme's icon of that
// name; else an empty icon. The accessible description belongs on the button that shows it.
QIcon symbol(const QString &name, int size = 14);

} // namespace PixelIcon
