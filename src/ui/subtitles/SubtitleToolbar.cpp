#include "ui/subtitles/SubtitleToolbar.h"

#include "ui/common/IconButton.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QSlider>

#include <cmath>

namespace {

constexpr int sliderSteps = 100;  // the slider counts hundredths of opacity

// A slim white track on the dark bar; the default groove is drawn for light windows.
constexpr auto sliderStyle = R"(
QSlider::groove:horizontal { height: 4px; border-radius: 2px; background: rgba(255, 255, 255, 0.22); }
QSlider::sub-page:horizontal { height: 4px; border-radius: 2px; background: rgba(255, 255, 255, 0.8); }
QSlider::handle:horizontal { width: 12px; height: 12px; margin: -4px 0; border-radius: 6px; background: #ffffff; }
)";

} // namespace

SubtitleToolbar::SubtitleToolbar(double opacity, QWidget *parent)
    : QWidget(parent)
    , slider_(new QSlider(Qt::Horizontal, this))
{
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(10, 4, 10, 4);
    row->setSpacing(8);

    auto *shade = button(QStringLiteral("circle.lefthalf.filled"), QString(), 13);
    shade->setAttribute(Qt::WA_TransparentForMouseEvents);  // a label, not a button
    shade->setFocusPolicy(Qt::NoFocus);
    row->addWidget(shade);

    slider_->setRange(int(std::lround(minimumOpacity * sliderSteps)), sliderSteps);
    slider_->setFixedWidth(90);
    slider_->setStyleSheet(QString::fromLatin1(sliderStyle));
    setOpacity(opacity);
    connect(slider_, &QSlider::valueChanged, this, [this] { onOpacity(this->opacity()); });
    row->addWidget(slider_);

    auto *smaller = button(QStringLiteral("textformat.size.smaller"), QStringLiteral("字小一点"), 9);
    auto *larger = button(QStringLiteral("textformat.size.larger"), QStringLiteral("字大一点"), 13);
    style_ = button(QStringLiteral("paintpalette"), QStringLiteral("字体和颜色"), 13);
    connect(smaller, &QToolButton::clicked, this, [this] { onSmaller(); });
    connect(larger, &QToolButton::clicked, this, [this] { onLarger(); });
    connect(style_, &QToolButton::clicked, this, [this] { onStyle(); });
    for (IconButton *item : {smaller, larger, style_})
        row->addWidget(item);
}

double SubtitleToolbar::opacity() const
{
    return slider_->value() / double(sliderSteps);
}

void SubtitleToolbar::setOpacity(double opacity)
{
    slider_->setValue(int(std::lround(opacity * sliderSteps)));
}

QWidget *SubtitleToolbar::styleButton() const
{
    return style_;
}

IconButton *SubtitleToolbar::button(const QString &symbol, const QString &description, int size)
{
    auto *item = new IconButton(symbol, description, this, size);
    item->setTint(IconButton::Tint::white);
    return item;
}

void SubtitleToolbar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgbF(0.02f, 0.02f, 0.02f, 0.42f));
    painter.drawRoundedRect(QRectF(rect()), 10, 10);
}
