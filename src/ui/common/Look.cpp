#include "ui/common/Look.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

#include <cmath>

namespace {

QString current;

QPalette lightPalette()
{
    QPalette p;
    const QColor window(0xf1, 0xf1, 0xf3), text(0x1d, 0x1d, 0x1f), base(Qt::white);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, QColor(0xf6, 0xf6, 0xf8));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0xfa, 0xfa, 0xfb));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::ToolTipBase, base);
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(0x86, 0x86, 0x8b));
    p.setColor(QPalette::Link, QColor(0x0a, 0x6c, 0xd6));
    p.setColor(QPalette::Mid, QColor(0xc8, 0xc8, 0xcc));
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0xa0, 0xa0, 0xa5));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0xa0, 0xa0, 0xa5));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0xa0, 0xa0, 0xa5));
    return p;
}

QPalette darkPalette()
{
    QPalette p;
    const QColor window(0x1e, 0x1e, 0x21), text(0xec, 0xec, 0xef), base(0x26, 0x26, 0x2a);
    p.setColor(QPalette::Window, window);
    p.setColor(QPalette::WindowText, text);
    p.setColor(QPalette::Base, base);
    p.setColor(QPalette::AlternateBase, QColor(0x2c, 0x2c, 0x31));
    p.setColor(QPalette::Text, text);
    p.setColor(QPalette::Button, QColor(0x33, 0x33, 0x38));
    p.setColor(QPalette::ButtonText, text);
    p.setColor(QPalette::Highlight, QColor(0x0a, 0x84, 0xff));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::ToolTipBase, QColor(0x33, 0x33, 0x38));
    p.setColor(QPalette::ToolTipText, text);
    p.setColor(QPalette::PlaceholderText, QColor(0x8e, 0x8e, 0x93));
    p.setColor(QPalette::Link, QColor(0x5e, 0xae, 0xff));
    p.setColor(QPalette::Mid, QColor(0x48, 0x48, 0x4e));
    p.setColor(QPalette::Light, QColor(0x48, 0x48, 0x4e));
    p.setColor(QPalette::Dark, QColor(0x14, 0x14, 0x16));
    p.setColor(QPalette::Shadow, QColor(0x0a, 0x0a, 0x0b));
    p.setColor(QPalette::Disabled, QPalette::Text, QColor(0x6e, 0x6e, 0x73));
    p.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x6e, 0x6e, 0x73));
    p.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x6e, 0x6e, 0x73));
    return p;
}

// The desktop's palette, taken before the first look replaces it.
const QPalette &desktopPalette()
{
    static const QPalette palette = QApplication::palette();
    return palette;
}

} // namespace

namespace Look {

void apply(const QString &theme)
{
    desktopPalette();
    if (current.isEmpty())
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    current = theme.isEmpty() ? QStringLiteral("system") : theme;
    if (theme == u"light")
        QApplication::setPalette(lightPalette());
    else if (theme == u"dark")
        QApplication::setPalette(darkPalette());
    else
        QApplication::setPalette(isDark(desktopPalette()) ? darkPalette() : lightPalette());
}

QString theme()
{
    return current;
}

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Window).lightness() < 128;
}

QColor softBackground(const QPalette &palette)
{
    return isDark(palette) ? QColor::fromRgbF(0.118f, 0.118f, 0.13f) : QColor::fromRgbF(0.945f, 0.945f, 0.953f);
}

QFont scaled(QFont font, double factor)
{
    if (font.pixelSize() > 0)
        font.setPixelSize(std::max(1, int(std::lround(font.pixelSize() * factor))));
    else
        font.setPointSizeF(font.pointSizeF() * factor);
    return font;
}

QColor secondaryText(const QPalette &palette)
{
    QColor color = palette.color(QPalette::WindowText);
    color.setAlphaF(0.55f);
    return color;
}

} // namespace Look
