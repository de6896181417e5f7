#pragma once

// The sub-page "外观": theme, font and the text sizes of the panel and the subtitle bar. Holds and
// lays out its controls; SettingsSheet fills and reads them. Main thread only.

#include "ui/settings/SettingsPage.h"

class QComboBox;

class AppearancePage final : public SettingsPage
{
    Q_OBJECT

public:
    explicit AppearancePage(QWidget *parent = nullptr);

    QComboBox *themePopup;
    QComboBox *fontPopup;
    QComboBox *panelSizePopup;
    QComboBox *barSizePopup;
};
