#pragma once

// The question at the end of a class: its name and category, saved or not. A window-modal sheet
// on the panel; the answer comes through `answered`, never through a nested loop. Main thread only.

#include "app/views/Desktop.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

class SaveDialog final : public QDialog
{
    Q_OBJECT

public:
    SaveDialog(const Desktop::SaveQuestion &question, QWidget *parent);

    QLineEdit *name() const { return name_; }
    QComboBox *category() const { return category_; }
    // Closes the sheet with "保存" or "不保存" and the fields as they stand.
    void answer(bool save);

    std::function<void(const Desktop::SaveAnswer &answer)> answered = [](const Desktop::SaveAnswer &) {};

protected:
    void reject() override;

private:
    QLineEdit *name_;
    QComboBox *category_;
    bool done_ = false;
};
