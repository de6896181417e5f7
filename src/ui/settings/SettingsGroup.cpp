#include "ui/settings/SettingsGroup.h"

#include "ui/common/Look.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace {

constexpr qreal radius = 12;
constexpr int padding = 14;

} // namespace

SettingsGroup::SettingsGroup(QWidget *parent)
    : QWidget(parent)
    , form_(new QFormLayout(this))
{
    form_->setContentsMargins(padding, 10, padding, 10);
    form_->setHorizontalSpacing(16);
    form_->setVerticalSpacing(10);
    form_->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    form_->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    form_->setRowWrapPolicy(QFormLayout::DontWrapRows);
}

int SettingsGroup::addRow(const QString &label, QWidget *control)
{
    auto *name = new QLabel(label, this);
    name->setBuddy(control);
    if (control->sizePolicy().horizontalPolicy() & QSizePolicy::ExpandFlag) {
        form_->addRow(name, control);
        return form_->rowCount() - 1;
    }
    // A menu, a switch or a button keeps its size and sits at the right edge, as in a settings list.
    auto *field = new QWidget(this);
    auto *line = new QHBoxLayout(field);
    line->setContentsMargins(0, 0, 0, 0);
    line->addStretch(1);
    line->addWidget(control);
    form_->addRow(name, field);
    return form_->rowCount() - 1;
}

int SettingsGroup::addRow(QWidget *control)
{
    form_->addRow(control);
    return form_->rowCount() - 1;
}

void SettingsGroup::setRowVisible(int row, bool visible)
{
    form_->setRowVisible(row, visible);
}

void SettingsGroup::setRowSpacing(int pixels)
{
    form_->setVerticalSpacing(pixels);
}


void SettingsGroup::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool dark = Look::isDark(palette());
    QColor fill(Qt::white);
    fill.setAlphaF(dark ? 0.06f : 0.62f);
    QColor stroke = palette().color(QPalette::WindowText);
    stroke.setAlphaF(dark ? 0.15f : 0.18f);
    painter.setPen(QPen(stroke, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}
