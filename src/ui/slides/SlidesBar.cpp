#include "ui/slides/SlidesBar.h"

#include "ui/common/IconButton.h"
#include "ui/common/Look.h"
#include "ui/common/ToggleSwitch.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

constexpr int spacing = 8;
constexpr QMargins insets(12, 6, 12, 6);
constexpr int labelPixels = 12;

} // namespace

SlidesBar::SlidesBar(QWidget *parent)
    : QWidget(parent)
    , open_(new QPushButton(u"打开课件…"_s, this))
    , previous_(new IconButton(u"chevron.left"_s, u"上一页"_s, this))
    , pageLabel_(new QLabel(this))
    , next_(new IconButton(u"chevron.right"_s, u"下一页"_s, this))
    , autoLabel_(new QLabel(u"自动翻页"_s, this))
    , autoSwitch_(new ToggleSwitch(this, {30, 18}))
    , hint_(new QPushButton(this))
{
    pageLabel_->setObjectName(u"pageLabel"_s);
    autoSwitch_->setObjectName(u"autoSwitch"_s);
    hint_->setObjectName(u"hint"_s);

    QFont digits = pageLabel_->font();
    digits.setPixelSize(labelPixels);
    digits.setWeight(QFont::Medium);
    digits.setStyleHint(QFont::SansSerif);
    pageLabel_->setFont(digits);
    pageLabel_->setAlignment(Qt::AlignCenter);
    pageLabel_->setMinimumWidth(QFontMetrics(digits).horizontalAdvance(u"000 / 000"_s));
    autoSwitch_->setToolTip(u"测试中：AI 根据老师讲的内容自动翻到对应的页"_s);
    autoSwitch_->setAccessibleName(u"自动翻页"_s);
    QFont small = hint_->font();
    small.setPixelSize(labelPixels);
    hint_->setFont(small);
    hint_->setCursor(Qt::PointingHandCursor);
    hint_->setFlat(true);
    hint_->hide();
    paintQuietLabels();

    auto *row = new QHBoxLayout(this);
    row->setSpacing(spacing);
    row->setContentsMargins(insets);
    row->addWidget(open_);
    row->addWidget(previous_);
    row->addWidget(pageLabel_);
    row->addWidget(next_);
    row->addStretch(1);
    row->addWidget(autoLabel_);
    row->addWidget(autoSwitch_);
    row->addWidget(hint_);

    connect(open_, &QPushButton::clicked, this, [this] { onOpen(); });
    connect(previous_, &QToolButton::clicked, this, [this] { onPrevious(); });
    connect(next_, &QToolButton::clicked, this, [this] { onNext(); });
    connect(autoSwitch_, &QAbstractButton::toggled, this, [this](bool on) { onAutoFlip(on); });
    connect(hint_, &QPushButton::clicked, this, [this] { onHint(); });
}

void SlidesBar::setPageText(const QString &text)
{
    pageLabel_->setText(text);
    // Without a page there is nowhere to turn to.
    previous_->setEnabled(!text.isEmpty());
    next_->setEnabled(!text.isEmpty());
}

void SlidesBar::setAutoFlip(bool on)
{
    const QSignalBlocker quiet(autoSwitch_);
    autoSwitch_->setChecked(on);
}

void SlidesBar::showHint(const QString &text)
{
    hint_->setText(text);
    hint_->show();
}

void SlidesBar::hideHint()
{
    hint_->hide();
}

void SlidesBar::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        paintQuietLabels();
}

void SlidesBar::paintQuietLabels()
{
    for (QLabel *label : {pageLabel_, autoLabel_}) {
        QPalette quiet = label->palette();
        quiet.setColor(QPalette::WindowText, Look::secondaryText(palette()));
        label->setPalette(quiet);
    }
    // The suggestion stands out in the accent colour, as a link would.
    QPalette accent = hint_->palette();
    accent.setColor(QPalette::ButtonText, palette().color(QPalette::Highlight));
    hint_->setPalette(accent);
}
