#include "ui/subtitles/SubtitleColors.h"

#include <QPainter>
#include <QPixmap>

#include <algorithm>

namespace SubtitleColors {

const QList<Choice> &translationChoices()
{
    static const QList<Choice> list{
        {QString(), QStringLiteral("白色（默认）")},
        {QStringLiteral("#ffd84d"), QStringLiteral("亮黄")},
        {QStringLiteral("#7fd6ff"), QStringLiteral("天蓝")},
        {QStringLiteral("#8ef0b4"), QStringLiteral("薄荷绿")},
        {QStringLiteral("#ffa3c7"), QStringLiteral("樱花粉")},
        {QStringLiteral("#ffb36b"), QStringLiteral("橙色")},
    };
    return list;
}

const QList<Choice> &sourceChoices()
{
    static const QList<Choice> list{
        {QString(), QStringLiteral("浅灰（默认）")},
        {QStringLiteral("#ffffff"), QStringLiteral("白色")},
        {QStringLiteral("#ffd84d"), QStringLiteral("亮黄")},
        {QStringLiteral("#7fd6ff"), QStringLiteral("天蓝")},
        {QStringLiteral("#8ef0b4"), QStringLiteral("薄荷绿")},
    };
    return list;
}

std::optional<QColor> parse(const QString &text)
{
    if (text.size() != 7 || !text.startsWith(u'#'))
        return std::nullopt;
    const QStringView digits = QStringView(text).mid(1);
    const bool hexadecimal = std::all_of(digits.begin(), digits.end(), [](QChar c) {
        return c.isDigit() || (c.toLower() >= u'a' && c.toLower() <= u'f');
    });
    if (!hexadecimal)
        return std::nullopt;
    const uint rgb = digits.toUInt(nullptr, 16);
    return QColor(int((rgb >> 16) & 0xff), int((rgb >> 8) & 0xff), int(rgb & 0xff));
}

QString hex(const QColor &color)
{
    const QColor rgb = color.toRgb();
    // Cut, not rounded; the small nudge keeps k/255 from landing just below k.
    const auto byte = [](float component) { return std::clamp(int(component * 255.0f + 1e-3f), 0, 255); };
    return QStringLiteral("#%1%2%3")
        .arg(byte(rgb.redF()), 2, 16, QLatin1Char('0'))
        .arg(byte(rgb.greenF()), 2, 16, QLatin1Char('0'))
        .arg(byte(rgb.blueF()), 2, 16, QLatin1Char('0'));
}

QIcon swatch(const QString &value, const QColor &fallback)
{
    const QColor fill = value.isEmpty() ? fallback : parse(value).value_or(QColor(Qt::white));
    const qreal ratio = 2.0;  // sharp on high-density screens, scaled down elsewhere
    QPixmap pixmap(QSize(14, 14) * ratio);
    pixmap.setDevicePixelRatio(ratio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QColor::fromRgbF(0.5f, 0.5f, 0.5f, 0.6f), 1.0));
    painter.setBrush(fill);
    painter.drawEllipse(QRectF(1.5, 1.5, 11, 11));
    painter.end();
    return QIcon(pixmap);
}

QColor translationDefault()
{
    return QColor(0xff, 0xff, 0xff);
}

QColor sourceDefault()
{
    return QColor(0xb9, 0xc6, 0xc8);
}

} // namespace SubtitleColors
