#pragma once

// The library's list: the classes of the chosen shelf (saved or recently deleted) that pass the
// category filter and the search, in the store's order. Search runs over the in-memory haystacks
// of the last listing; a query that extends the previous one only looks through its matches.
// Main thread only. The listing is shared and constant; the model never touches the disk.

#include "ui/library/LibraryListing.h"

#include <QAbstractListModel>

#include <functional>
#include <memory>
#include <optional>

class LibraryModel final : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role { DetailRole = Qt::UserRole + 1, AlertRole };

    // Which classes pass besides the search: every one of a shelf, or those of one category
    // (an empty category: those without one).
    struct Filter
    {
        bool trash = false;
        std::optional<QString> category;
        friend bool operator==(const Filter &, const Filter &) = default;
    };

    explicit LibraryModel(QObject *parent = nullptr);

    // True for the class being recorded; asked while painting.
    std::function<bool(const QString &folder)> isLive = [](const QString &) { return false; };

    void setShelves(std::shared_ptr<const LibraryListing::Shelves> shelves);
    // The chosen shelf, before any filter or search.
    const QList<LibraryListing::Entry> &all() const;
    const LibraryListing::Shelves &shelves() const { return *shelves_; }
    // Filters and searches again; `query` as typed.
    void apply(const Filter &filter, const QString &query);

    const LibraryListing::Entry &entry(int row) const;
    // The row of a class shown now, or none.
    std::optional<int> row(const QString &folder) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    QList<int> searched(const QList<int> &candidates, const QString &query) const;

    std::shared_ptr<const LibraryListing::Shelves> shelves_;
    Filter filter_;
    QString query_;
    QList<int> passing_;   // indexes into all() passing the filter
    QList<int> shown_;     // those of passing_ that match query_
};
