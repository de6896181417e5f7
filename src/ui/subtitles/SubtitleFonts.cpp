#include "ui/subtitles/SubtitleFonts.h"

#include "settings/UserDefaults.h"

#include <algorithm>

namespace SubtitleFonts {

const QList<Font> &fonts()
{
    // The labels name the fonts the pages map each id to on this system.
    static const QList<Font> list{
        {QStringLiteral("system"), QStringLiteral("思源黑体（系统默认）")},
        {QStringLiteral("songti"), QStringLiteral("宋体（系统自带）")},
        {QStringLiteral("wenkai"), QStringLiteral("霞鹜文楷")},
        {QStringLiteral("smiley"), QStringLiteral("得意黑")},
        {QStringLiteral("kuaile"), QStringLiteral("站酷快乐体")},
    };
    return list;
}

QString storedID()
{
    const QString id = UserDefaults::text(fontKey);
    return id.isEmpty() ? QStringLiteral("system") : id;
}

double storedSize()
{
    bool ok = false;
    const double size = UserDefaults::value(sizeKey, 22.0).toDouble(&ok);
    return ok ? clampSize(size) : 22.0;
}

double clampSize(double points)
{
    return std::clamp(points, 12.0, 48.0);
}

} // namespace SubtitleFonts
