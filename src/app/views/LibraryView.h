#pragma once

// The library of saved classes as the coordinator sees it. Main thread only.

#include <QSet>
#include <QString>

#include <functional>
#include <optional>

class LibraryView
{
public:
    LibraryView() = default;
    virtual ~LibraryView() = default;
    LibraryView(const LibraryView &) = delete;
    LibraryView &operator=(const LibraryView &) = delete;
    LibraryView(LibraryView &&) = delete;
    LibraryView &operator=(LibraryView &&) = delete;

    virtual void show() = 0;
    virtual bool isVisible() const = 0;
    virtual void reload() = 0;
    virtual void refresh(const QString &folder) = 0;
    // The folders being refined, shown as running.
    virtual void setRefining(const QSet<QString> &folders) = 0;

    std::function<bool(const QString &folder)> isLive = [](const QString &) { return false; };
    std::function<void(const QString &title, const std::optional<QString> &category)> onLiveRename =
        [](const QString &, const std::optional<QString> &) {};
    std::function<void(const QString &folder)> onRefine = [](const QString &) {};
};
