#include "ui/settings/MainPage.h"

#include "ui/account/MenuRow.h"
#include "ui/settings/SettingsGroup.h"
#include "ui/settings/SettingsRows.h"
#include "ui/common/ToggleSwitch.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

using namespace Qt::StringLiterals;

MainPage::MainPage(QWidget *parent)
    : SettingsPage(u"设置"_s, Kind::main, parent)
    , aiGroup(addGroup(u"AI"_s))
    , accountLabel(new QLabel(this))
    , signOutButton(new QPushButton(u"退出登录"_s, this))
    , aiServiceLabel(new QLabel(this))
    , ownKeyRow(new MenuRow(u"key"_s, u"使用自己的 API key…"_s, {}, this))
    , captionGroup(addGroup(u"字幕"_s))
    , sourcePopup(SettingsRows::popup(SettingsChoices::sources(), u"sourcePopup"_s, this))
    , appBox(new QComboBox(this))
    , layoutPopup(SettingsRows::popup(SettingsChoices::layouts(), u"layoutPopup"_s, this))
    , emailSwitch(new ToggleSwitch(this))
    , modelsRow(new MenuRow(u"cpu"_s, u"AI 模型分配"_s, {}, this))
    , appearanceRow(new MenuRow(u"paintbrush"_s, u"外观"_s, {}, this))
    , storageRow(new MenuRow(u"internaldrive"_s, u"存储"_s, {}, this))
    , cloudRow(new MenuRow(u"icloud"_s, u"云端同步"_s, {}, this))
{
    accountLabel->setObjectName(u"accountLabel"_s);
    accountLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto *account = new QWidget(this);
    auto *accountLine = new QHBoxLayout(account);
    accountLine->setContentsMargins(0, 0, 0, 0);
    accountLine->addWidget(accountLabel, 1);
    accountLine->addWidget(signOutButton);
    aiGroup->addRow(u"账户"_s, account);
    aiServiceLabel->setObjectName(u"aiServiceLabel"_s);
    aiGroup->addRow(u"AI 服务"_s, aiServiceLabel);
    aiGroup->addRow(ownKeyRow);

    appBox->setObjectName(u"appBox"_s);
    appBox->setEditable(true);
    SettingsRows::boundWidth(appBox);
    appBox->setInsertPolicy(QComboBox::NoInsert);
    captionGroup->addRow(u"字幕来源"_s, sourcePopup);
    captionGroup->addRow(u"翻译软件"_s, appBox);

    addGroup(u"窗口"_s)->addRow(u"主窗口布局"_s, layoutPopup);

    emailSwitch->setObjectName(u"emailSwitch"_s);
    addGroup(u"下课后"_s)->addRow(u"把笔记和思维导图发到邮箱"_s, emailSwitch);

    SettingsGroup *more = addGroup();
    more->setRowSpacing(0);
    for (MenuRow *row : {modelsRow, appearanceRow, storageRow, cloudRow})
        more->addRow(row);
    // Tests and accessibility find a row by its title.
    for (MenuRow *row : {ownKeyRow, modelsRow, appearanceRow, storageRow, cloudRow})
        row->setObjectName(row->title());
}
