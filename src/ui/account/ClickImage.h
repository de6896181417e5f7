#pragma once

// A picture that acts on release of a click, with a pointing hand: the message page's mind map,
// shown at a given width with its proportions kept. Main thread only.

#include <QLabel>

#include <functional>

class ClickImage final : public QLabel
{
    Q_OBJECT

public:
    // A side below one pixel counts as one.
    ClickImage(const QImage &image, int width, QWidget *parent = nullptr);

    std::function<void()> onClick = [] {};

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
};
