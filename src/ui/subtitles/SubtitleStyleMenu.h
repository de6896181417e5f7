#pragma once

// The bar's menu of fonts and colours, built anew each time it opens so that its check marks
// show what is stored now: the five fonts, the translation colours and the source colours, each
// colour list ending in "自定义…". Picking a row only reports it; the bar stores and applies it.
// Main thread only; the menu is a child of the widget that opens it.

#include "ui/subtitles/SubtitleColors.h"

#include <QMenu>

#include <functional>

class SubtitleStyleMenu final : public QMenu
{
    Q_OBJECT

public:
    struct Stored
    {
        QString fontID;
        QString translation;
        QString source;
    };

    enum class Target { translation, source };

    SubtitleStyleMenu(const Stored &stored, QWidget *parent);

    std::function<void(const QString &fontID)> onFont = [](const QString &) {};
    std::function<void(Target target, const QString &value)> onColor = [](Target, const QString &) {};
    std::function<void(Target target)> onCustomColor = [](Target) {};

protected:
    // Check marks sit in a gutter of their own, left of the swatches, as the style would draw
    // them in the swatch's place.
    void initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    void addHeader(const QString &title);
    void addFonts(const QString &stored);
    void addColors(Target target, const QList<SubtitleColors::Choice> &choices, const QString &stored,
                   const QColor &empty);
};
