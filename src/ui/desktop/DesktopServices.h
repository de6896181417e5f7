#pragma once

// The desktop behind the coordinator's questions and requests: sheets on the panel answered
// through callbacks, the about box, notifications over the freedesktop D-Bus service (silent
// when none runs), opening files with the user's applications, the look, and quitting.
// Main thread only.

#include "app/views/Desktop.h"

#include <QObject>
#include <QPointer>

class QWidget;

class DesktopServices final : public QObject, public Desktop
{
    Q_OBJECT

public:
    // Sheets open on `sheetParent`, which outlives this object.
    explicit DesktopServices(QWidget *sheetParent);

    void askToSave(const SaveQuestion &question, std::function<void(const SaveAnswer &)> answer) override;
    void confirmDiscard(std::function<void(bool discard)> answer) override;
    void showAbout(const QString &message, const QString &info) override;
    void notify(const QString &title, const QString &body) override;
    void open(const QString &path) override;
    void quit() override;
    void setTheme(const QString &theme) override;
    bool isActive() const override;

private:
    QWidget *sheetParent_;
};
