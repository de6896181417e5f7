#pragma once

// The cat chooser that drops down below the account window's avatar: a heading and every cat in
// rows of seven, the current one ringed. Choosing one closes it. A pop-up window of its own,
// closed by a click outside or Escape. Main thread only.

#include <QFrame>

#include <functional>

class CatGrid;

class CatPicker final : public QFrame
{
    Q_OBJECT

public:
    explicit CatPicker(QWidget *parent = nullptr);

    // Opens with `current` ringed, its top centre just below `anchor`'s bottom centre.
    void open(int current, const QWidget *anchor);
    CatGrid *cats() const { return grid_; }

    std::function<void(int index)> onPicked = [](int) {};

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    CatGrid *grid_;
};
