#include "ui/settings/AppChoices.h"

#include "platform/X11WindowCapture.h"

#include <QDir>
#include <QSet>
#include <QStandardPaths>

#include <algorithm>

namespace AppChoices {

namespace {

QStringList running()
{
    QStringList names;
    auto opened = X11WindowCapture::open();
    if (auto *capture = std::get_if<std::unique_ptr<WindowCapture>>(&opened)) {
        for (const WindowCapture::Window &window : (*capture)->windows())
            names.append(window.application);
    }
    return names;
}

QStringList installed()
{
    QStringList names;
    for (const QString &folder : QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {
        for (const QString &file : QDir(folder).entryList({QStringLiteral("*.desktop")}, QDir::Files))
            names.append(file.chopped(int(sizeof ".desktop") - 1));
    }
    return names;
}

void sortByLowerCase(QStringList &names)
{
    std::stable_sort(names.begin(), names.end(),
                     [](const QString &a, const QString &b) { return a.toLower() < b.toLower(); });
}

QStringList merge(const QString &current, QStringList runningNames, QStringList installedNames)
{
    sortByLowerCase(runningNames);
    sortByLowerCase(installedNames);
    QStringList names;
    QSet<QString> seen;
    for (const QString &name : QStringList{current} + runningNames + installedNames) {
        const QString key = name.toLower();
        if (name.isEmpty() || seen.contains(key))
            continue;
        seen.insert(key);
        names.append(name);
    }
    return names;
}

} // namespace

QStringList choices(const QString &current)
{
    return merge(current, running(), installed());
}

} // namespace AppChoices
