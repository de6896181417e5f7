#pragma once

// A rounded group of labelled rows on a settings page, drawn as a soft card on the window's
// background; rows can hide and show as the choices above them change. Main thread only; the
// controls handed in become the group's children.

#include <QWidget>

class QFormLayout;

class SettingsGroup final : public QWidget
{
    Q_OBJECT

public:
    explicit SettingsGroup(QWidget *parent = nullptr);

    // Appends a row of a label and a control; gives the row's index.
    int addRow(const QString &label, QWidget *control);
    // Appends a control over the whole width, without a label.
    int addRow(QWidget *control);
    void setRowVisible(int row, bool visible);
    // Room between rows; rows that light up under the pointer sit closer together.
    void setRowSpacing(int pixels);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QFormLayout *form_;
};
