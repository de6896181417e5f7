#include "ui/common/ToneLabel.h"

#include "ui/common/Look.h"

#include <QApplication>
#include <QEvent>

ToneLabel::ToneLabel(const QString &text, Tone tone, QWidget *parent)
    : QLabel(text, parent)
    , tone_(tone)
{
    setTextFormat(Qt::PlainText);
    paint();
}

void ToneLabel::setTone(Tone tone)
{
    tone_ = tone;
    paint();
}

void ToneLabel::changeEvent(QEvent *event)
{
    QLabel::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && !painting_)
        paint();
}

void ToneLabel::paint()
{
    // The look comes from the application, not from this label's own palette, which holds the
    // colour set last time.
    const QPalette look = QApplication::palette();
    QColor color = look.color(QPalette::WindowText);
    if (tone_ == Tone::secondary)
        color = Look::secondaryText(look);
    else if (tone_ == Tone::error)
        color = Look::isDark(look) ? QColor(0xff, 0x45, 0x3a) : QColor(0xe0, 0x2e, 0x24);
    QPalette own = palette();
    own.setColor(QPalette::WindowText, color);
    own.setColor(QPalette::Text, color);
    painting_ = true;
    setPalette(own);
    painting_ = false;
}
