#pragma once

// The strip across the top of the subtitle bar that the student holds to move it: the window's
// own colour with a small pill in the middle. It only paints and shows its cursor and tool tip;
// mouse presses pass on to the bar, which moves or resizes itself. Also the rule for which edges
// of the bar a point is near. Main thread only.

#include <QWidget>

class SubtitleGrip final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int stripHeight = 28;

    explicit SubtitleGrip(QWidget *parent);

    // The edges of a window of `size` that a point in it is near enough to grab; none in the middle.
    static Qt::Edges edgesAt(QPoint point, QSize size);
    // The cursor for resizing at those edges, the arrow for none.
    static Qt::CursorShape cursorFor(Qt::Edges edges);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
};
