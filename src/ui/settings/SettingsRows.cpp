#include "ui/settings/SettingsRows.h"

#include "ui/common/Look.h"

#include <QComboBox>
#include <QLabel>

namespace SettingsRows {

namespace {

// Half the window: the row's label keeps its room.
constexpr int widestOutsideName = 240;

QComboBox *emptyPopup(const QString &name, QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setObjectName(name);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return box;
}

} // namespace

QComboBox *popup(const QList<SettingsChoices::Choice> &choices, const QString &name, QWidget *parent)
{
    QComboBox *box = emptyPopup(name, parent);
    for (const auto &choice : choices)
        box->addItem(choice.label, choice.value);
    return box;
}

QComboBox *popup(const QList<SettingsChoices::Size> &sizes, const QString &name, QWidget *parent)
{
    QComboBox *box = emptyPopup(name, parent);
    for (const auto &size : sizes)
        box->addItem(size.label, size.value);
    return box;
}

void boundWidth(QComboBox *popup)
{
    popup->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    popup->setMaximumWidth(widestOutsideName);
}

void select(QComboBox *popup, const QString &value)
{
    popup->setCurrentIndex(std::max(0, popup->findData(value)));
}

QString selected(const QComboBox *popup)
{
    return popup->currentData().toString();
}

double selectedSize(const QComboBox *popup)
{
    return popup->currentData().toDouble();
}

QLabel *sectionTitle(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    label->setContentsMargins(4, 6, 0, 0);
    return label;
}

QLabel *note(const QString &text, QWidget *parent)
{
    auto *label = new QLabel(text, parent);
    // The palette's quiet text colour, so the note follows light and dark by itself.
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setWordWrap(true);
    QFont font = label->font();
    font = Look::scaled(font, 0.9);
    label->setFont(font);
    label->setContentsMargins(4, 0, 4, 0);
    return label;
}

} // namespace SettingsRows
