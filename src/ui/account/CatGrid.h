#pragma once

// Every cat of the avatar catalogue as round buttons in rows of seven, the chosen one ringed in the
// accent colour. Used by the sign-in window's avatar step and by the account window's chooser.
// Main thread only; the buttons are children of the grid.

#include <QList>
#include <QWidget>

#include <functional>

class AvatarButton;

class CatGrid final : public QWidget
{
    Q_OBJECT

public:
    CatGrid(int buttonSize, int gap, QWidget *parent = nullptr);

    void setChosen(int index);
    int chosen() const { return chosen_; }
    const QList<AvatarButton *> &buttons() const { return buttons_; }

    std::function<void(int index)> onPicked = [](int) {};

private:
    QList<AvatarButton *> buttons_;
    int chosen_ = -1;
};
