#pragma once

// The slide window's content: takes files dragged onto it and keeps those that are slides.
// Main thread only; its children are owned by Qt as usual.

#include <QStringList>
#include <QWidget>

#include <functional>

class SlidesDrop final : public QWidget
{
    Q_OBJECT

public:
    explicit SlidesDrop(QWidget *parent = nullptr);

    // Gets the dropped slide files (never an empty list); the drop succeeds when there are any.
    std::function<void(const QStringList &paths)> onDrop = [](const QStringList &) {};

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
};
