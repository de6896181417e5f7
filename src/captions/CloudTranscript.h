#pragma once

// What the cloud recogniser has said in a class, and which of the local recogniser's sentences
// still stand in the draft. Cloud text arrives seconds late; until it covers a stretch, the local
// sentences of that stretch show as a draft, and they leave the draft from the front as the cloud
// sentences for them arrive. Local sentences never become final lines.
//
// Thread-safe: the uploader writes answers and failures, the engine's thread reads lines, the
// draft and the problem. The lock is held only for list work; draft() calls inProgress under it
// (so that lock comes before the local recogniser's own, never the other way round).

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <mutex>
#include <optional>
#include <utility>

class CloudTranscript final
{
public:
    static constexpr qsizetype draftSentences = 6;

    // Lower case, letters and decimal digits only: the key two recognisers' sentences are compared by.
    static QString normalized(const QString &text);
    // Whether two normalised texts say much the same: one holds the other, or most characters of
    // the shorter one are found in the longer one.
    static bool similar(const QString &a, const QString &b);

    // The final lines not read yet, joined by "\n"; empty when there are none.
    QString read();
    // The current trouble with the cloud, worded for the user.
    std::optional<QString> problem() const;

    void fail(const QString &issue);
    // A good answer for the segment cut at `cut`: clears any trouble, adds the sentences as final
    // lines, and covers what the local recogniser heard until shortly after the cut.
    void merge(const QStringList &sentences, const QDateTime &cut);
    // Takes the local recogniser's new final sentences, heard by `now`, and gives the draft: the
    // local sentences the cloud has not covered yet (the last six at most) and then the words in
    // progress, joined by blanks.
    QString draft(const QStringList &localFinals, const QDateTime &now, const std::function<QString()> &inProgress);

private:
    // Under mutex_.
    void dropCovered();

    mutable std::mutex mutex_;
    QStringList lines_;
    std::optional<QString> issue_;
    QList<std::pair<QDateTime, QString>> localFinals_;
    QDateTime committedUntil_;   // local sentences heard before this are covered
    QStringList covered_;        // normalised cloud sentences, the last 12
};
