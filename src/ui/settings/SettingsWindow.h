#pragma once

// The settings window: "设置", 480 pixels wide, showing one page at a time above the "完成"
// button, its height fitted to the page with the top edge kept. Return presses "完成"; Escape and
// the close button cancel. Beside a parent it is window-modal on it, as a sheet. Main thread only;
// the pages added become its children.

#include <QDialog>

#include <functional>

class QPushButton;
class QStackedWidget;
class QVariantAnimation;

class SettingsWindow final : public QDialog
{
    Q_OBJECT

public:
    static constexpr int contentWidth = 480;

    explicit SettingsWindow(QWidget *parent = nullptr);

    void addPage(QWidget *page);
    void showPage(QWidget *page);
    QWidget *currentPage() const;
    // Sets the height to what the current page needs, keeping the top edge; a shown window gets
    // there in a short animation.
    void fit();

    std::function<void()> onDone = [] {};
    std::function<void()> onCancel = [] {};

    void reject() override;

private:
    QStackedWidget *pages_;
    QPushButton *done_;
    QVariantAnimation *resizing_;
};
