#pragma once

// The subtitle bar: large bilingual text on a dark, translucent, frameless window that floats over
// whatever the student is looking at. A strip across the top moves it, its edges resize it, and a
// small toolbar sets opacity, text size, font and colours, each stored at once in the user
// defaults. The font also goes to the panel's transcript through `onFont`; the coordinator docks
// the bar on the panel and keeps it above other windows through `setFrame` and `setFloating`.
//
// Main thread only. The window lives as long as the process; closing it only hides it. It owns its
// transcript and every widget on it.

#include "app/views/SubtitleView.h"
#include "ui/subtitles/SubtitleStyleMenu.h"
#include "ui/web/TranscriptView.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <optional>

class IconButton;
class QColorDialog;
class QPropertyAnimation;
class SubtitleGrip;
class SubtitleToolbar;

class SubtitleWindow final : public QWidget, public SubtitleView
{
    Q_OBJECT

public:
    static constexpr auto frameName = "MarrowlineSubtitles";
    static constexpr auto opacityKey = "subtitle.opacity";
    static constexpr QSize defaultSize{760, 190};
    static constexpr QSize smallestSize{320, 90};

    explicit SubtitleWindow(QWidget *parent = nullptr);

    // The stored text size, 22 when none.
    static double textSize();

    TranscriptView &transcript() override;
    // Minimised: restored, nothing else. Hidden: shown in front. Shown: hidden, then `onHide`.
    void toggle() override;
    void show() override;
    bool isVisible() const override;
    QString fontID() const override;
    void setFontFamily(const QString &fontID) override;
    void setTextSize(double points) override;
    QRect frame() const override;
    void setFrame(const QRect &frame, bool animated) override;
    void setFloating(bool floating) override;

    // The bar was hidden, by its close request or by `toggle`.
    std::function<void()> onHide = [] {};

    // What the toolbar does, also for the settings window and tests.
    double fontSize() const { return fontSize_; }
    double opacity() const { return opacity_; }
    void setOpacity(double opacity);
    void smaller();
    void larger();
    void toggleSettings();
    bool settingsOpen() const;
    // The font and colour menu as it would open now; the caller shows or deletes it.
    SubtitleStyleMenu *styleMenu();
    // Opens the colour chooser (without alpha) on the stored colour of one text, white when
    // that isn't a colour; a chosen colour arrives in `colorPanelChanged`.
    void customColor(SubtitleStyleMenu::Target target);
    void colorPanelChanged(const QColor &color);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    // A move or resize the bar does itself where the window manager offers none.
    struct Drag
    {
        Qt::Edges edges;  // none: a move
        QPoint start;
        QRect frame;
    };

    void placeLayers();
    void placeDefault();
    void hideBar();
    void showStyleMenu();
    void pickColor(SubtitleStyleMenu::Target target, const QString &value);
    void applyColors();
    void saveFrame();
    QRect dragged(QPoint global) const;

    bool composited_;
    double fontSize_;
    double opacity_;
    bool pickingTranslation_ = true;
    TranscriptView *transcript_;
    SubtitleGrip *grip_;
    IconButton *settingsButton_;
    SubtitleToolbar *toolbar_;
    QPropertyAnimation *animation_;
    QPointer<QColorDialog> colorPanel_;
    std::optional<Drag> drag_;
};
