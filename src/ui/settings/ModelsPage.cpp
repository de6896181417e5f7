#include "ui/settings/ModelsPage.h"

#include "ui/settings/SettingsGroup.h"
#include "ui/settings/SettingsRows.h"
#include "ui/common/ToggleSwitch.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>

using namespace Qt::StringLiterals;

ModelsPage::ModelsPage(QWidget *parent)
    : SettingsPage(u"AI 模型分配"_s, Kind::sub, parent)
    , modelsGroup(addGroup())
    , builtinPopup(SettingsRows::popup(SettingsChoices::builtins(), u"builtinPopup"_s, this))
    , recognizerPopup(SettingsRows::popup(SettingsChoices::recognizers(), u"recognizerPopup"_s, this))
    , devicePopup(new QComboBox(this))
    , cloudModelPopup(SettingsRows::popup(SettingsChoices::cloudModels(), u"cloudModelPopup"_s, this))
    , openaiField(new QLineEdit(this))
    , modelPopup(new QComboBox(this))
    , modelField(new QLineEdit(this))
    , correctSwitch(new ToggleSwitch(this))
    , refineSwitch(new ToggleSwitch(this))
    , captionNote(nullptr)
{
    devicePopup->setObjectName(u"devicePopup"_s);
    SettingsRows::boundWidth(devicePopup);
    openaiField->setObjectName(u"openaiField"_s);
    openaiField->setEchoMode(QLineEdit::Password);
    openaiField->setClearButtonEnabled(true);
    modelPopup->setObjectName(u"modelPopup"_s);
    modelField->setObjectName(u"modelField"_s);
    modelField->setPlaceholderText(u"填模型名"_s);
    correctSwitch->setObjectName(u"correctSwitch"_s);
    refineSwitch->setObjectName(u"refineSwitch"_s);

    modelsGroup->addRow(u"Quillet AI 使用"_s, builtinPopup);
    modelsGroup->addRow(u"识别方式"_s, recognizerPopup);
    modelsGroup->addRow(u"输入设备"_s, devicePopup);
    modelsGroup->addRow(u"云端识别模型"_s, cloudModelPopup);
    modelsGroup->addRow(u"OpenAI Key（云端识别）"_s, openaiField);
    modelsGroup->addRow(u"对话和总结模型"_s, modelPopup);
    modelsGroup->addRow(u"模型名"_s, modelField);
    modelsGroup->addRow(u"AI 纠错和精准翻译"_s, correctSwitch);
    modelsGroup->addRow(u"下课后精修文字稿"_s, refineSwitch);
    captionNote = addNote({});
    captionNote->setObjectName(u"captionNote"_s);
}
