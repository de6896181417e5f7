#include "ui/account/StepProgress.h"

#include "ui/account/AccountLook.h"
#include "ui/account/LoginSteps.h"

#include <QHBoxLayout>
#include <QPainter>

namespace {

constexpr int markWidth = 22;
constexpr int markHeight = 4;
constexpr int markGap = 5;
constexpr int maxMarks = 4;

} // namespace

StepProgress::StepProgress(QWidget *parent)
    : QWidget(parent)
    , label_(AccountLook::label({}, 12, ToneLabel::Tone::secondary, this))
{
    label_->setWordWrap(false);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(10);
    row->addStretch();
    // The marks are painted into the room this spacer keeps.
    row->addSpacing(maxMarks * (markWidth + markGap));
    row->addWidget(label_);
    row->addStretch();
}

void StepProgress::setStep(int step, int total)
{
    step_ = step;
    total_ = total;
    label_->setText(LoginSteps::counterText(step, total));
    update();
}

QString StepProgress::text() const
{
    return label_->text();
}

QRect StepProgress::marks() const
{
    const int width = total_ * markWidth + (total_ - 1) * markGap;
    return {label_->geometry().left() - 10 - width, height() / 2 - markHeight / 2, width, markHeight};
}

void StepProgress::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QRect area = marks();
    for (int i = 0; i < total_; ++i) {
        painter.setBrush(i < step_ ? palette().color(QPalette::Highlight) : palette().color(QPalette::Mid));
        painter.drawRoundedRect(QRectF(area.left() + i * (markWidth + markGap), area.top(), markWidth, markHeight), 2, 2);
    }
}
