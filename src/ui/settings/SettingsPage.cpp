#include "ui/settings/SettingsPage.h"

#include "ui/account/AccountLook.h"
#include "ui/common/Look.h"
#include "ui/settings/SettingsGroup.h"
#include "ui/settings/SettingsRows.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

SettingsPage::SettingsPage(const QString &title, Kind kind, QWidget *parent)
    : QWidget(parent)
    , column_(new QVBoxLayout(this))
{
    setObjectName(title);
    column_->setContentsMargins(0, 0, 0, 0);
    column_->setSpacing(8);
    if (kind == Kind::main)
        return;
    auto *row = new QHBoxLayout;
    QPushButton *back = AccountLook::linkButton(QStringLiteral("‹ 返回"), this);
    back->setObjectName(QStringLiteral("backButton"));
    connect(back, &QPushButton::clicked, this, [this] { onBack(); });
    auto *heading = new QLabel(title, this);
    QFont font = heading->font();
    font.setBold(true);
    font = Look::scaled(font, 1.15);
    heading->setFont(font);
    heading->setAlignment(Qt::AlignCenter);
    // The title stays centred: an empty box as wide as the button balances it on the right.
    auto *balance = new QWidget(this);
    balance->setFixedWidth(back->sizeHint().width());
    row->addWidget(back);
    row->addWidget(heading, 1);
    row->addWidget(balance);
    column_->addLayout(row);
    column_->addSpacing(4);
}

SettingsGroup *SettingsPage::addGroup(const QString &section)
{
    if (!section.isEmpty())
        column_->addWidget(SettingsRows::sectionTitle(section, this));
    auto *group = new SettingsGroup(this);
    column_->addWidget(group);
    return group;
}

QLabel *SettingsPage::addNote(const QString &text)
{
    QLabel *label = SettingsRows::note(text, this);
    column_->addWidget(label);
    return label;
}

void SettingsPage::addWidget(QWidget *widget)
{
    column_->addWidget(widget);
}
