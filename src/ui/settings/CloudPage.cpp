#include "ui/settings/CloudPage.h"

#include "ui/settings/SettingsGroup.h"
#include "ui/common/ToggleSwitch.h"

using namespace Qt::StringLiterals;

CloudPage::CloudPage(QWidget *parent)
    : SettingsPage(u"云端同步"_s, Kind::sub, parent)
    , cloudSwitch(new ToggleSwitch(this))
{
    cloudSwitch->setObjectName(u"cloudSwitch"_s);
    addGroup()->addRow(u"把笔记和 AI 分析存到云端"_s, cloudSwitch);
    addNote(u"云端服务还在准备中，开通后打开这个开关的笔记会自动上传。\n现在所有笔记都保存在这台电脑：文档 › Quillet。"_s);
}
