#pragma once

// The sub-page "云端同步": the stored switch of a cloud upload that is still to come. Main thread
// only.

#include "ui/settings/SettingsPage.h"

class ToggleSwitch;

class CloudPage final : public SettingsPage
{
    Q_OBJECT

public:
    explicit CloudPage(QWidget *parent = nullptr);

    ToggleSwitch *cloudSwitch;
};
