#pragma once

// One page of the settings window: a column of section titles, groups and notes. A sub-page has
// a title row whose "‹ 返回" button leads back to the main page. Main thread only.

#include <QWidget>

#include <functional>

class QLabel;
class QVBoxLayout;
class SettingsGroup;

class SettingsPage : public QWidget
{
    Q_OBJECT

public:
    enum class Kind { main, sub };

    // `title` is shown on a sub-page and names the page for tests and accessibility.
    SettingsPage(const QString &title, Kind kind, QWidget *parent = nullptr);

    std::function<void()> onBack = [] {};

protected:
    SettingsGroup *addGroup(const QString &section = {});
    QLabel *addNote(const QString &text);
    void addWidget(QWidget *widget);

private:
    QVBoxLayout *column_;
};
