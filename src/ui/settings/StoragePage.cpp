#include "ui/settings/StoragePage.h"

#include "ui/settings/SettingsGroup.h"
#include "ui/settings/SettingsRows.h"
#include "ui/common/ToggleSwitch.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

StoragePage::StoragePage(QWidget *parent)
    : SettingsPage(u"存储"_s, Kind::sub, parent)
    , usageLabel(new QLabel(this))
    , qualityPopup(SettingsRows::popup(SettingsChoices::qualities(), u"qualityPopup"_s, this))
    , openFolderButton(new QPushButton(u"在文件管理器中打开"_s, this))
    , storageGroup(nullptr)
    , cleanSwitch(new ToggleSwitch(this))
    , limitPopup(SettingsRows::popup(SettingsChoices::limits(), u"limitPopup"_s, this))
    , overflowPopup(SettingsRows::popup(SettingsChoices::overflows(), u"overflowPopup"_s, this))
{
    usageLabel->setObjectName(u"usageLabel"_s);
    openFolderButton->setObjectName(u"openFolderButton"_s);
    openFolderButton->setMinimumWidth(openFolderButton->sizeHint().width() + 16);
    cleanSwitch->setObjectName(u"cleanSwitch"_s);

    SettingsGroup *usage = addGroup();
    usage->addRow(u"已使用"_s, usageLabel);
    usage->addRow(u"录音音质"_s, qualityPopup);
    usage->addRow(u"课程记录"_s, openFolderButton);

    storageGroup = addGroup();
    storageGroup->addRow(u"自动清理"_s, cleanSwitch);
    storageGroup->addRow(u"本地存储上限"_s, limitPopup);
    storageGroup->addRow(u"超出上限时"_s, overflowPopup);
    addNote(u"占空间的主要是录音。打开自动清理后，超出上限时最早那几节课的录音会移到回收站，文字稿、翻译和笔记一直保留。\n"
            u"「存到云端」要等云端服务开通，在那之前不会做任何清理。"_s);
}
