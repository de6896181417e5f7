#include "captions/CloudTranscript.h"

#include "text/Characters.h"

#include <QHash>

#include <algorithm>

namespace {

constexpr qsizetype coveredCount = 12;
constexpr double similarShare = 0.6;
// The local recogniser lags the sound a little: what it finishes up to this long after a cut
// belongs to the segment before the cut.
constexpr qint64 commitLagMs = 2'500;

} // namespace

QString CloudTranscript::normalized(const QString &text)
{
    QString kept;
    for (const char32_t c : text.toLower().toUcs4()) {
        if (Text::isIn(Text::CharClass::Letters, c) || Text::isIn(Text::CharClass::DecimalDigits, c))
            kept.append(QString::fromUcs4(&c, 1));
    }
    return kept;
}

bool CloudTranscript::similar(const QString &a, const QString &b)
{
    if (a.isEmpty() || b.isEmpty())
        return false;
    if (a.contains(b) || b.contains(a))
        return true;
    const QStringList ofA = Text::characters(a);
    const QStringList ofB = Text::characters(b);
    const qsizetype common = Text::sharedCount(ofA, ofB);
    const qsizetype shorter = std::min(ofA.size(), ofB.size());
    return double(common) / double(shorter) >= similarShare;
}

QString CloudTranscript::read()
{
    std::scoped_lock lock(mutex_);
    return std::exchange(lines_, {}).join(u'\n');
}

std::optional<QString> CloudTranscript::problem() const
{
    std::scoped_lock lock(mutex_);
    return issue_;
}

void CloudTranscript::fail(const QString &issue)
{
    std::scoped_lock lock(mutex_);
    issue_ = issue;
}

void CloudTranscript::merge(const QStringList &sentences, const QDateTime &cut)
{
    std::scoped_lock lock(mutex_);
    issue_.reset();
    lines_ << sentences;
    const QDateTime until = cut.addMSecs(commitLagMs);
    if (!committedUntil_.isValid() || until > committedUntil_)
        committedUntil_ = until;
    for (const QString &sentence : sentences)
        covered_ << normalized(sentence);
    if (covered_.size() > coveredCount)
        covered_ = covered_.mid(covered_.size() - coveredCount);
    dropCovered();
}

QString CloudTranscript::draft(const QStringList &localFinals, const QDateTime &now,
                               const std::function<QString()> &inProgress)
{
    std::scoped_lock lock(mutex_);
    for (const QString &sentence : localFinals)
        localFinals_.append({now, sentence});
    if (committedUntil_.isValid())
        localFinals_.removeIf([&](const auto &entry) { return entry.first < committedUntil_; });
    dropCovered();
    if (localFinals_.size() > draftSentences)
        localFinals_.remove(0, localFinals_.size() - draftSentences);

    QStringList shown;
    for (const auto &entry : std::as_const(localFinals_))
        shown << entry.second;
    shown << inProgress();
    shown.removeAll(QString());
    return shown.join(u' ');
}

void CloudTranscript::dropCovered()
{
    localFinals_.removeIf([&](const auto &entry) {
        const QString key = normalized(entry.second);
        return std::any_of(covered_.begin(), covered_.end(),
                           [&](const QString &cloud) { return similar(key, cloud); });
    });
}
