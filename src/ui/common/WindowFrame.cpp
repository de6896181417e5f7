#include "ui/common/WindowFrame.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWidget>

namespace {

QString key(const QString &name)
{
    return QStringLiteral("window/") + name;
}

} // namespace

namespace WindowFrame {

bool restore(QWidget *window, const QString &name)
{
    const QVariant saved = QSettings().value(key(name));
    if (!saved.canConvert<QRect>() || !saved.toRect().isValid())
        return false;
    const QRect frame = onScreen(saved.toRect());
    window->resize(frame.size());
    window->move(frame.topLeft());
    return true;
}

void save(const QWidget *window, const QString &name)
{
    QSettings().setValue(key(name), QRect(window->pos(), window->size()));
}

QRect onScreen(const QRect &frame)
{
    QScreen *best = QGuiApplication::primaryScreen();
    int bestArea = 0;
    for (QScreen *screen : QGuiApplication::screens()) {
        const QRect common = screen->availableGeometry() & frame;
        const int area = common.isValid() ? common.width() * common.height() : 0;
        if (area > bestArea) {
            best = screen;
            bestArea = area;
        }
    }
    if (!best)
        return frame;
    const QRect area = best->availableGeometry();
    QRect placed(frame.topLeft(), frame.size().boundedTo(area.size()));
    placed.moveLeft(std::clamp(placed.left(), area.left(), area.right() + 1 - placed.width()));
    placed.moveTop(std::clamp(placed.top(), area.top(), area.bottom() + 1 - placed.height()));
    return placed;
}

void setFloating(QWidget *window, bool floating)
{
    if (floating == bool(window->windowFlags() & Qt::WindowStaysOnTopHint))
        return;
    // Changing a window flag hides the window.
    const bool visible = window->isVisible();
    window->setWindowFlag(Qt::WindowStaysOnTopHint, floating);
    if (visible)
        window->show();
}

} // namespace WindowFrame
