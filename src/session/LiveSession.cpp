#include "session/LiveSession.h"

#include "session/SessionStore.h"
#include "text/Clock.h"

#include <QDir>

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds saveDelay{2'000};
// A line is heard about this long before the recogniser hands it over.
constexpr double lineLead = 3.0;

std::optional<QString> nonEmpty(const std::optional<QString> &text)
{
    return text && !text->isEmpty() ? text : std::nullopt;
}

} // namespace

LiveSession::LiveSession(const QString &lecture, const QString &answer, int bitRate, MicHub &hub,
                         const Text::Clock &clock, Schedule schedule)
    : clock_(clock)
    , schedule_(schedule ? std::move(schedule) : Text::mainThreadSchedule())
    , recorder_(hub)
    , self_(std::make_shared<LiveSession *>(this))
{
    const QDateTime now = clock_.now();
    folder_ = SessionStore::unique(SessionStore::root() + u'/' + SessionText::folderName(now));
    data_ = SessionData::make(lecture, answer, now);
    recorder_.setBitRate(bitRate);
    QDir().mkpath(folder_);
    save();
}

LiveSession::~LiveSession() = default;

QString LiveSession::audioURL() const
{
    return folder_ + u'/' + SessionStore::audioFile;
}

double LiveSession::elapsed() const
{
    return double(data_.started.msecsTo(stoppedAt_.value_or(clock_.now()))) / 1000.0;
}

std::optional<QString> LiveSession::startAudio()
{
    return recorder_.start(audioURL());
}

void LiveSession::stopAudio()
{
    recorder_.stop();
    if (!stoppedAt_)
        stoppedAt_ = clock_.now();
}

qsizetype LiveSession::addLine(const QString &text)
{
    data_.lines.append({std::max(elapsed() - lineLead, 0.0), text, QString()});
    scheduleSave();
    return data_.lines.size() - 1;
}

void LiveSession::setText(qsizetype index, const QString &text)
{
    if (index < 0 || index >= data_.lines.size())
        return;
    data_.lines[index].text = text;
    scheduleSave();
}

void LiveSession::setTranslation(qsizetype index, const QString &text)
{
    if (index < 0 || index >= data_.lines.size())
        return;
    data_.lines[index].translation = text;
    scheduleSave();
}

void LiveSession::addNote(const QString &kind, const QString &text)
{
    data_.notes.append({elapsed(), kind, text});
    scheduleSave();
}

void LiveSession::addTerms(const QList<SessionData::Term> &terms)
{
    data_.vocabulary = data_.vocabulary.value_or(QList<SessionData::Term>()) + terms;
    scheduleSave();
    SessionStore::addToWordBook(terms, data_.title, data_.category);
}

void LiveSession::setSummary(const QString &text)
{
    data_.summary = text;
    scheduleSave();
}

void LiveSession::rename(const QString &title, const std::optional<QString> &category)
{
    if (!title.isEmpty())
        data_.title = title;
    data_.category = nonEmpty(category);
    save();
}

void LiveSession::finish(const QString &title, const std::optional<QString> &category)
{
    stopAudio();
    data_.duration = elapsed();
    if (!title.isEmpty())
        data_.title = title;
    data_.category = category;
    save();
}

void LiveSession::save()
{
    data_.duration = std::max(data_.duration, elapsed());
    SessionStore::write(data_, folder_);
}

void LiveSession::scheduleSave()
{
    if (saveScheduled_)
        return;
    saveScheduled_ = true;
    schedule_(saveDelay, [weak = std::weak_ptr<LiveSession *>(self_)] {
        const auto self = weak.lock();
        if (!self)
            return;
        (*self)->saveScheduled_ = false;
        (*self)->save();
    });
}
