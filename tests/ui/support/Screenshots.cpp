#include "support/Screenshots.h"

#include <QDir>
#include <QSet>

namespace Screenshots {

int colours(const QImage &image)
{
    QSet<QRgb> seen;
    for (int y = 0; y < image.height(); y += 3)
        for (int x = 0; x < image.width(); x += 3)
            seen.insert(image.pixel(x, y));
    return int(seen.size());
}

void keep(const QImage &image, const QString &name)
{
    const QString dir = qEnvironmentVariable("QUILLET_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return;
    QDir().mkpath(dir);
    image.save(dir + u'/' + name + QStringLiteral(".png"));
}

} // namespace Screenshots
