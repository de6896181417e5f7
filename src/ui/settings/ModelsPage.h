#pragma once

// The sub-page "AI 模型分配": which AI the built-in service uses, how speech is recognised and from
// which input device, the cloud model and its key, the own-key model, and the two AI switches.
// Holds and lays out its controls; SettingsSheet fills and reads them. Main thread only.

#include "ui/settings/SettingsPage.h"

class QComboBox;
class QLineEdit;
class SettingsGroup;
class ToggleSwitch;

class ModelsPage final : public SettingsPage
{
    Q_OBJECT

public:
    explicit ModelsPage(QWidget *parent = nullptr);

    // Rows of `modelsGroup`, in order; each but the last two shows only where its choice applies.
    enum Row { builtinRow, recognizerRow, deviceRow, cloudModelRow, openaiRow, modelRow, modelNameRow, correctRow, refineRow };

    SettingsGroup *modelsGroup;
    QComboBox *builtinPopup;
    QComboBox *recognizerPopup;
    QComboBox *devicePopup;
    QComboBox *cloudModelPopup;
    QLineEdit *openaiField;
    QComboBox *modelPopup;
    QLineEdit *modelField;
    ToggleSwitch *correctSwitch;
    ToggleSwitch *refineSwitch;
    QLabel *captionNote;
};
