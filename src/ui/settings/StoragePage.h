#pragma once

// The sub-page "存储": space in use, recording quality, the notes folder, and the automatic clean-up
// with its limit. Holds and lays out its controls; SettingsSheet fills and reads them. Main thread
// only.

#include "ui/settings/SettingsPage.h"

class QComboBox;
class QPushButton;
class SettingsGroup;
class ToggleSwitch;

class StoragePage final : public SettingsPage
{
    Q_OBJECT

public:
    explicit StoragePage(QWidget *parent = nullptr);

    // Rows of `storageGroup` shown only while the clean-up is on.
    static constexpr int limitRow = 1;
    static constexpr int overflowRow = 2;

    QLabel *usageLabel;
    QComboBox *qualityPopup;
    QPushButton *openFolderButton;
    SettingsGroup *storageGroup;
    ToggleSwitch *cleanSwitch;
    QComboBox *limitPopup;
    QComboBox *overflowPopup;
};
