#pragma once

// The sub-page of the user's own API key: the switch, the service and the key with a link to the
// service's key page. Holds and lays out its controls; SettingsSheet fills and reads them. Main
// thread only.

#include "ui/settings/SettingsPage.h"

class QComboBox;
class QLineEdit;
class SettingsGroup;
class ToggleSwitch;

class OwnKeyPage final : public SettingsPage
{
    Q_OBJECT

public:
    explicit OwnKeyPage(QWidget *parent = nullptr);

    // Rows of `ownGroup` shown only in own-key mode.
    static constexpr int providerRow = 1;
    static constexpr int keyRow = 2;

    SettingsGroup *ownGroup;
    ToggleSwitch *ownSwitch;
    QComboBox *providerPopup;
    QLineEdit *keyField;
    QLabel *keyLink;
};
