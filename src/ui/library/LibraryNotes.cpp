#include "ui/library/LibraryNotes.h"

#include "session/SessionStore.h"

#include <QSignalBlocker>

#include <chrono>

using namespace std::chrono_literals;

LibraryNotes::LibraryNotes(Text::Schedule schedule, QWidget *parent)
    : QPlainTextEdit(parent)
    , schedule_(schedule ? std::move(schedule) : Text::mainThreadSchedule())
    , self_(std::make_shared<LibraryNotes *>(this))
{
    setObjectName(QStringLiteral("myNotes"));
    connect(this, &QPlainTextEdit::textChanged, this, &LibraryNotes::changed);
}

void LibraryNotes::load(const QString &folder)
{
    ++generation_;
    folder_ = folder;
    const QSignalBlocker quiet(this);
    setPlainText(folder.isEmpty() ? QString() : SessionStore::myNotes(folder));
}

void LibraryNotes::flush()
{
    ++generation_;
    const QString text = toPlainText();
    if (!folder_.isEmpty() && SessionStore::myNotes(folder_) != text)
        SessionStore::saveMyNotes(text, folder_);
}

void LibraryNotes::changed()
{
    const int generation = ++generation_;
    schedule_(1s, [weak = std::weak_ptr<LibraryNotes *>(self_), generation] {
        const auto self = weak.lock();
        if (self && (*self)->generation_ == generation)
            (*self)->flush();
    });
}
