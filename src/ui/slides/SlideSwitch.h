#pragma once

// A small on/off switch: a rounded track with a round knob, the accent colour when on. It is a
// checkable button, so `toggled` reports changes. Main thread only.

#include <QAbstractButton>

class SlideSwitch final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit SlideSwitch(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
