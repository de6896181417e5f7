#include "ui/settings/SettingsRows.h"

#include "ui/common/Look.h"

#include <QComboBox>
#include <QEvent>
#include <QLabel>

namespace SettingsRows {

namespace {

QComboBox *emptyPopup(const QString &name, QWidget *parent)
{
    auto *box = new QComboBox(parent);
    box->setObjectName(name);
    box->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return box;
}

// Secondary text that follows the palette, also after a switch between light and dark.
class QuietLabel final : public QLabel
{
public:
    QuietLabel(const QString &text, QWidget *parent)
        : QLabel(text, parent)
    {
        colour();
    }

protected:
    void changeEvent(QEvent *event) override
    {
        QLabel::changeEvent(event);
        if (event->type() == QEvent::PaletteChange)
            colour();
    }

private:
    void colour()
    {
        const QColor colour = Look::secondaryText(palette());
        if (palette().color(QPalette::WindowText) == colour)
            return;
        QPalette own = palette();
        own.setColor(QPalette::WindowText, colour);
        setPalette(own);
    }
};

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
    auto *label = new QuietLabel(text, parent);
    label->setWordWrap(true);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * 0.9);
    label->setFont(font);
    label->setContentsMargins(4, 0, 4, 0);
    return label;
}

} // namespace SettingsRows
