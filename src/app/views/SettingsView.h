#pragma once

// The settings sheet as the coordinator sees it: it edits a copy of the record and hands it back
// with "完成". Main thread only.

#include "settings/Config.h"

#include <functional>

class SettingsView
{
public:
    SettingsView() = default;
    virtual ~SettingsView() = default;
    SettingsView(const SettingsView &) = delete;
    SettingsView &operator=(const SettingsView &) = delete;
    SettingsView(SettingsView &&) = delete;
    SettingsView &operator=(SettingsView &&) = delete;

    virtual void load(const Config &config) = 0;
    virtual void show() = 0;
    virtual void hide() = 0;

    std::function<void(const Config &config, const QString &fontID)> onSave = [](const Config &, const QString &) {};
    std::function<void(double points)> onBarSize = [](double) {};
    std::function<void()> onSignOut = [] {};
    std::function<void()> onClose = [] {};
};
