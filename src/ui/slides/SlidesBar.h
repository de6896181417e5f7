#pragma once

// The row of controls along the top of the slide window: open, previous and next page, the page
// number, the automatic turning switch and the suggestion button. It only shows and reports.
// Main thread only; its widgets are its Qt children.

#include <QWidget>

#include <functional>

class IconButton;
class QLabel;
class QPushButton;
class ToggleSwitch;

class SlidesBar final : public QWidget
{
    Q_OBJECT

public:
    explicit SlidesBar(QWidget *parent = nullptr);

    std::function<void()> onOpen = [] {};
    std::function<void()> onPrevious = [] {};
    std::function<void()> onNext = [] {};
    std::function<void(bool on)> onAutoFlip = [](bool) {};
    std::function<void()> onHint = [] {};

    // The page number and count; empty, with the page buttons off, without a document.
    void setPageText(const QString &text);
    // Sets the switch without reporting it.
    void setAutoFlip(bool on);
    void showHint(const QString &text);
    void hideHint();

protected:
    void changeEvent(QEvent *event) override;

private:
    void paintQuietLabels();

    QPushButton *open_;
    IconButton *previous_;
    QLabel *pageLabel_;
    IconButton *next_;
    QLabel *autoLabel_;
    ToggleSwitch *autoSwitch_;
    QPushButton *hint_;
};
