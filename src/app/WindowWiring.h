#pragma once

// The coordinator's side of the windows: every callback of every window wired to its operation,
// the language, switch and settings changes the windows report, and the relations between the
// windows that it keeps up (the bar merged with and docked on the panel, floating levels, the
// look).
//
// Main thread only.

#include "app/AppServices.h"
#include "app/AppState.h"
#include "app/AppWindows.h"

#include <QRect>

class ChatDesk;
class ClassLifecycle;
class LiveObjects;
class Translator;

class WindowWiring final
{
public:
    static constexpr int dockGap = 6;
    static constexpr int dockedHeightAtLeast = 110;
    static constexpr int unmergeLift = 24;

    WindowWiring(AppWindows &windows, AppServices &services, AppState &state, Translator &translator,
                 LiveObjects &live, ClassLifecycle &lifecycle, ChatDesk &chat);

    // The bar's frame docked on the panel: the panel's width, just above it.
    static QRect dockedFrame(const QRect &panel, const QRect &bar);

    void wire();
    void record();
    void toggleSubtitles();
    void setMerged(bool merged);
    void dock();
    void keepBarAbove();
    void applyLook();
    void showSettings();
    void showAccount();
    void togglePin();

private:
    void onLanguages(const QString &lecture, const QString &answer);
    void onExtras(const QStringList &extras);
    void onSwitches(const Switches &switches);
    void onSave(const Config &config, const QString &fontID);
    void signOut();
    void save();

    AppWindows &windows_;
    AppServices &services_;
    AppState &state_;
    Translator &translator_;
    LiveObjects &live_;
    ClassLifecycle &lifecycle_;
    ChatDesk &chat_;
};
