#include "ui/library/LibraryModel.h"

#include "platform/Http.h"
#include "ui/library/LibraryTexts.h"

#include <QtConcurrent/QtConcurrentFilter>

namespace {

// Below this many classes one thread searches faster than the pool can be woken.
constexpr qsizetype parallelFrom = 64;

} // namespace

LibraryModel::LibraryModel(QObject *parent)
    : QAbstractListModel(parent)
    , shelves_(std::make_shared<const LibraryListing::Shelves>())
{
}

void LibraryModel::setShelves(std::shared_ptr<const LibraryListing::Shelves> shelves)
{
    beginResetModel();
    shelves_ = std::move(shelves);
    passing_.clear();
    shown_.clear();
    query_.clear();
    endResetModel();
}

const QList<LibraryListing::Entry> &LibraryModel::all() const
{
    return filter_.trash ? shelves_->deleted : shelves_->classes;
}

void LibraryModel::apply(const Filter &filter, const QString &typed)
{
    const QString query = typed.trimmed().toLower();
    beginResetModel();
    const bool narrower = filter == filter_ && !query_.isEmpty() && query.contains(query_);
    if (!narrower) {
        filter_ = filter;
        passing_.clear();
        const QList<LibraryListing::Entry> &entries = all();
        for (int i = 0; i < entries.size(); ++i) {
            const std::optional<QString> &category = entries[i].data.category;
            if (filter_.trash || !filter_.category
                || category.value_or(QString()) == *filter_.category)
                passing_.append(i);
        }
    }
    // A longer query can only match where the shorter one did.
    shown_ = searched(narrower ? shown_ : passing_, query);
    query_ = query;
    endResetModel();
}

QList<int> LibraryModel::searched(const QList<int> &candidates, const QString &query) const
{
    if (query.isEmpty())
        return candidates;
    const QList<LibraryListing::Entry> &entries = all();
    const auto matches = [&](int i) { return LibraryListing::matches(entries[i], query); };
    if (candidates.size() < parallelFrom) {
        QList<int> found;
        std::copy_if(candidates.begin(), candidates.end(), std::back_inserter(found), matches);
        return found;
    }
    return QtConcurrent::blockingFiltered(&Http::taskPool(), candidates, matches);
}

const LibraryListing::Entry &LibraryModel::entry(int row) const
{
    return all()[shown_[row]];
}

std::optional<int> LibraryModel::row(const QString &folder) const
{
    for (int row = 0; row < shown_.size(); ++row) {
        if (entry(row).folder == folder)
            return row;
    }
    return std::nullopt;
}

int LibraryModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(shown_.size());
}

QVariant LibraryModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= shown_.size())
        return {};
    const LibraryListing::Entry &shown = entry(index.row());
    const bool live = !shown.deleted && isLive(shown.folder);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return shown.data.title;
    case DetailRole: {
        LibraryTexts::RowState state{live, std::nullopt};
        if (shown.deleted)
            state.daysLeft = SessionStore::daysLeft(shown.data);
        return LibraryTexts::rowDetail(shown.data, state);
    }
    case AlertRole:
        return live || shown.deleted;
    default:
        return {};
    }
}
