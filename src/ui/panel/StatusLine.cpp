#include "ui/panel/StatusLine.h"

#include "ui/common/ToneLabel.h"

#include <QHBoxLayout>
#include <QPainter>

namespace {

const QColor green(0x34, 0xc7, 0x59);
const QColor orange(0xff, 0x95, 0x00);
const QColor grey(0x8e, 0x8e, 0x93);
constexpr int dotSize = 7;
constexpr int dotGap = 6;

} // namespace

StatusLine::StatusLine(QWidget *parent)
    : QWidget(parent)
    , label_(new ToneLabel({}, ToneLabel::Tone::secondary))
    , dot_(grey)
{
    // Statuses carry text from servers and sources: the label never reads them as markup.
    label_->setAlignment(Qt::AlignCenter);
    QFont font = label_->font();
    font.setPixelSize(11);
    label_->setFont(font);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(dotSize + dotGap, 0, 0, 0);
    row->addWidget(label_);
    setStatus(QStringLiteral("启动中…"));
}

void StatusLine::setStatus(const QString &text)
{
    if (text.startsWith(u'●')) {
        text_ = text.mid(2);
        dot_ = green;
    } else {
        text_ = QString(text).remove(QStringLiteral("⚠️ "));
        dot_ = text.startsWith(QStringLiteral("⚠️")) ? orange : grey;
    }
    setToolTip(text_);
    elide();
    update();
}

void StatusLine::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    elide();
}

void StatusLine::elide()
{
    const int room = std::max(40, width() - dotSize - dotGap);
    label_->setText(label_->fontMetrics().elidedText(QString(text_).replace(u'\n', u' '), Qt::ElideRight, room));
}

void StatusLine::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(dot_);
    const QRect text = label_->geometry();
    const int textWidth = label_->fontMetrics().horizontalAdvance(label_->text());
    const int left = text.left() + (text.width() - textWidth) / 2 - dotGap - dotSize;
    painter.drawEllipse(QRectF(std::max(0, left), text.center().y() - dotSize / 2.0 + 0.5, dotSize, dotSize));
}
