#include "FakeWindows.h"

QStringList WindowLog::starting(const QString &prefix) const
{
    QStringList found;
    for (const QString &entry : entries) {
        if (entry.startsWith(prefix))
            found << entry;
    }
    return found;
}

FakeTranscript::FakeTranscript(WindowLog &log, QString name)
    : log_(log)
    , name_(std::move(name))
{
}

void FakeTranscript::clear(const QString &hint)
{
    log_.add(name_ + u".clear " + hint);
}

void FakeTranscript::addLine(int id, const QString &text)
{
    log_.add(name_ + QStringLiteral(".add %1 ").arg(id) + text);
}

void FakeTranscript::setText(int id, const QString &text)
{
    log_.add(name_ + QStringLiteral(".text %1 ").arg(id) + text);
}

void FakeTranscript::setTranslation(int id, const QString &text)
{
    log_.add(name_ + QStringLiteral(".tr %1 ").arg(id) + text);
}

void FakeTranscript::setDrafts(const Drafts &drafts)
{
    QStringList shown;
    for (const auto &[text, translation] : drafts)
        shown << text + u'|' + translation;
    log_.add(name_ + u".drafts " + shown.join(u", "));
}

FakePanel::FakePanel(WindowLog &log)
    : FakeFeed<PanelView>(log, QStringLiteral("panel"))
    , transcript_(log, QStringLiteral("rows"))
{
}

void FakePanel::setRecording(bool recording, const QString &time)
{
    say(recording ? u"recording " + time : QStringLiteral("stopped"));
}

void FakePanel::setLanguages(const QString &lecture, const QString &answer, const QStringList &extras)
{
    say(u"languages " + lecture + u" → " + answer + (extras.isEmpty() ? QString() : u" + " + extras.join(u',')));
}

FakeSubtitles::FakeSubtitles(WindowLog &log)
    : transcript_(log, QStringLiteral("bar"))
{
}

void FakeDesktop::askToSave(const SaveQuestion &question, std::function<void(const SaveAnswer &)> answer)
{
    questions << question;
    if (saves.empty())
        return;
    const SaveAnswer given = saves.front();
    saves.pop_front();
    answer(given);
}

void FakeDesktop::confirmDiscard(std::function<void(bool)> answer)
{
    if (discards.empty())
        return;
    const bool discard = discards.front();
    discards.pop_front();
    answer(discard);
}
