#include "ui/settings/OwnKeyPage.h"

#include "settings/ProviderInfo.h"
#include "ui/common/Look.h"
#include "ui/settings/SettingsGroup.h"
#include "ui/common/ToggleSwitch.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

OwnKeyPage::OwnKeyPage(QWidget *parent)
    : SettingsPage(u"自己的 API key"_s, Kind::sub, parent)
    , ownGroup(addGroup())
    , ownSwitch(new ToggleSwitch(this))
    , providerPopup(new QComboBox(this))
    , keyField(new QLineEdit(this))
    , keyLink(new QLabel(this))
{
    ownSwitch->setObjectName(u"ownSwitch"_s);
    providerPopup->setObjectName(u"providerPopup"_s);
    for (const ProviderInfo &provider : ProviderInfo::all())
        providerPopup->addItem(provider.displayName, provider.id);
    keyField->setObjectName(u"keyField"_s);
    keyField->setEchoMode(QLineEdit::Password);
    keyField->setClearButtonEnabled(true);
    keyLink->setObjectName(u"keyLink"_s);
    keyLink->setTextFormat(Qt::RichText);
    keyLink->setCursor(Qt::PointingHandCursor);
    // A step below the body text, as the note under a field.
    QFont small = keyLink->font();
    small = Look::scaled(small, 0.9);
    keyLink->setFont(small);

    auto *key = new QWidget(this);
    key->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    auto *column = new QVBoxLayout(key);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(4);
    column->addWidget(keyField);
    column->addWidget(keyLink);

    ownGroup->addRow(u"使用自己的 API key"_s, ownSwitch);
    ownGroup->addRow(u"服务"_s, providerPopup);
    ownGroup->addRow(u"API Key"_s, key);
    addNote(u"默认由 Quillet 提供 AI，不需要 key。打开后改用你自己的 key：只保存在这台电脑的密钥环里，费用记在你自己的账户上。"_s);
}
