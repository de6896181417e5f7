#include "ScriptedSource.h"

void ScriptedSource::feed(const QStringList &lines)
{
    std::scoped_lock lock(mutex_);
    pending_ << lines;
}

void ScriptedSource::show(const QString &text)
{
    std::scoped_lock lock(mutex_);
    shown_ = text;
}

void ScriptedSource::setDraft(const QString &draft)
{
    std::scoped_lock lock(mutex_);
    draft_ = draft;
}

void ScriptedSource::setProblem(std::optional<QString> problem)
{
    std::scoped_lock lock(mutex_);
    problem_ = std::move(problem);
}

void ScriptedSource::setStartProblem(std::optional<QString> problem)
{
    std::scoped_lock lock(mutex_);
    startProblem_ = std::move(problem);
}

int ScriptedSource::reads() const
{
    std::scoped_lock lock(mutex_);
    return reads_;
}

int ScriptedSource::starts() const
{
    std::scoped_lock lock(mutex_);
    return starts_;
}

int ScriptedSource::stops() const
{
    std::scoped_lock lock(mutex_);
    return stops_;
}

std::thread::id ScriptedSource::stopThread() const
{
    std::scoped_lock lock(mutex_);
    return stopThread_;
}

bool ScriptedSource::waitForReads(int count, std::chrono::milliseconds timeout) const
{
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, timeout, [&] { return reads_ >= count; });
}

std::optional<QString> ScriptedSource::start()
{
    std::scoped_lock lock(mutex_);
    ++starts_;
    return startProblem_;
}

QString ScriptedSource::read()
{
    std::scoped_lock lock(mutex_);
    ++reads_;
    changed_.notify_all();
    if (!shown_.isEmpty())
        return shown_;
    const QString lines = pending_.join(u'\n');
    pending_.clear();
    return lines;
}

QString ScriptedSource::draft()
{
    std::scoped_lock lock(mutex_);
    return draft_;
}

void ScriptedSource::stop()
{
    std::scoped_lock lock(mutex_);
    ++stops_;
    stopThread_ = std::this_thread::get_id();
}

std::optional<QString> ScriptedSource::problem()
{
    std::scoped_lock lock(mutex_);
    return problem_;
}
