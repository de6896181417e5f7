#pragma once

// An on/off switch drawn as a pill with a sliding knob, in the accent colour when on. A checkable
// button underneath: click, Space and toggled() as usual. Main thread only.

#include <QAbstractButton>
#include <QSize>

class ToggleSwitch final : public QAbstractButton
{
    Q_OBJECT

public:
    // `size` is the track's; the settings rows use the default, the slide bar a smaller one.
    explicit ToggleSwitch(QWidget *parent = nullptr, QSize size = {38, 22});

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QSize size_;
};
