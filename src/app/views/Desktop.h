#pragma once

// What the coordinator asks of the desktop rather than of one of its windows: the save and
// discard questions (answered later through a callback, never in a nested loop), the about box,
// a notification, opening a file or folder with the user's application, and quitting. Main
// thread only.

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class Desktop
{
public:
    struct SaveQuestion
    {
        QString info;          // the informative text under "保存这节课"
        QString name;
        QString category;
        QStringList categories;
    };
    struct SaveAnswer
    {
        bool save = false;     // "保存", else "不保存"
        QString name;          // the fields as the student left them
        QString category;
    };

    Desktop() = default;
    virtual ~Desktop() = default;
    Desktop(const Desktop &) = delete;
    Desktop &operator=(const Desktop &) = delete;
    Desktop(Desktop &&) = delete;
    Desktop &operator=(Desktop &&) = delete;

    virtual void askToSave(const SaveQuestion &question, std::function<void(const SaveAnswer &)> answer) = 0;
    // true for "不保存", false for "返回".
    virtual void confirmDiscard(std::function<void(bool discard)> answer) = 0;
    virtual void showAbout(const QString &message, const QString &info) = 0;
    virtual void notify(const QString &title, const QString &body) = 0;
    virtual void open(const QString &path) = 0;
    virtual void quit() = 0;
    // "light", "dark", or anything else for the desktop's own.
    virtual void setTheme(const QString &theme) = 0;
    // Whether one of the application's windows has the focus.
    virtual bool isActive() const = 0;

    // The application gained or lost the focus.
    std::function<void()> onActiveChanged = [] {};
};
