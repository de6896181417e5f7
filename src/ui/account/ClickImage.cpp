#include "ui/account/ClickImage.h"

#include <QMouseEvent>

#include <algorithm>

ClickImage::ClickImage(const QImage &image, int width, QWidget *parent)
    : QLabel(parent)
{
    const qreal ratio = qreal(std::max(1, image.height())) / std::max(1, image.width());
    const QSize size(width, std::max(1, qRound(width * ratio)));
    QPixmap pixmap = QPixmap::fromImage(image.scaled(size * devicePixelRatioF(), Qt::IgnoreAspectRatio,
                                                     Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(devicePixelRatioF());
    setPixmap(pixmap);
    setFixedSize(size);
    setCursor(Qt::PointingHandCursor);
}

void ClickImage::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void ClickImage::mouseReleaseEvent(QMouseEvent *event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        onClick();
}
