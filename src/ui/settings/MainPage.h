#pragma once

// The settings window's first page: the account and AI service, the caption source, the panel
// layout, the report mail, and the rows that open the five sub-pages. It only holds and lays out
// its controls; SettingsSheet fills and reads them. Main thread only.

#include "ui/settings/SettingsPage.h"

class MenuRow;
class QComboBox;
class QPushButton;
class SettingsGroup;
class ToggleSwitch;

class MainPage final : public SettingsPage
{
    Q_OBJECT

public:
    explicit MainPage(QWidget *parent = nullptr);

    // Rows of `aiGroup` and `captionGroup` that hide.
    static constexpr int accountRow = 0;
    static constexpr int appRow = 1;

    SettingsGroup *aiGroup;
    QLabel *accountLabel;
    QPushButton *signOutButton;
    QLabel *aiServiceLabel;
    MenuRow *ownKeyRow;
    SettingsGroup *captionGroup;
    QComboBox *sourcePopup;
    QComboBox *appBox;
    QComboBox *layoutPopup;
    ToggleSwitch *emailSwitch;
    MenuRow *modelsRow;
    MenuRow *appearanceRow;
    MenuRow *storageRow;
    MenuRow *cloudRow;
};
