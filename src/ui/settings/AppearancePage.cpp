#include "ui/settings/AppearancePage.h"

#include "ui/settings/SettingsGroup.h"
#include "ui/settings/SettingsRows.h"
#include "ui/subtitles/SubtitleFonts.h"

#include <QComboBox>

using namespace Qt::StringLiterals;

AppearancePage::AppearancePage(QWidget *parent)
    : SettingsPage(u"外观"_s, Kind::sub, parent)
    , themePopup(SettingsRows::popup(SettingsChoices::themes(), u"themePopup"_s, this))
    , fontPopup(new QComboBox(this))
    , panelSizePopup(SettingsRows::popup(SettingsChoices::panelSizes(), u"panelSizePopup"_s, this))
    , barSizePopup(SettingsRows::popup(SettingsChoices::barSizes(), u"barSizePopup"_s, this))
{
    fontPopup->setObjectName(u"fontPopup"_s);
    for (const SubtitleFonts::Font &font : SubtitleFonts::fonts())
        fontPopup->addItem(font.label, font.id);
    SettingsGroup *group = addGroup();
    group->addRow(u"主题"_s, themePopup);
    group->addRow(u"字体"_s, fontPopup);
    group->addRow(u"主窗口字号"_s, panelSizePopup);
    group->addRow(u"字幕条字号"_s, barSizePopup);
    addNote(u"字体对主窗口和字幕条都生效。字幕条字号和字幕条上的「小 / 大」按钮是同一个设置；颜色和透明度在字幕条右上角调整。"_s);
}
