#pragma once

// The bar's small toolbar, hidden until the settings button opens it: the opacity slider
// (0.15 to 1.0), a smaller and a larger text button, and the button of the font and colour menu,
// on a faint dark capsule. It reports what the student does; the bar stores and applies it.
// Main thread only; a child of the bar.

#include <QWidget>

#include <functional>

class IconButton;
class QSlider;

class SubtitleToolbar final : public QWidget
{
    Q_OBJECT

public:
    static constexpr double minimumOpacity = 0.15;

    SubtitleToolbar(double opacity, QWidget *parent);

    double opacity() const;
    void setOpacity(double opacity);
    // Where the style menu opens from.
    QWidget *styleButton() const;

    std::function<void(double opacity)> onOpacity = [](double) {};
    std::function<void()> onSmaller = [] {};
    std::function<void()> onLarger = [] {};
    std::function<void()> onStyle = [] {};

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    IconButton *button(const QString &symbol, const QString &description, int size);

    QSlider *slider_;
    IconButton *style_;
};
