#pragma once

// An on/off switch drawn as a pill with a sliding knob, in the accent colour when on. A checkable
// button underneath: click, Space and toggled() as usual. Main thread only.

#include <QAbstractButton>

class ToggleSwitch final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit ToggleSwitch(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};
