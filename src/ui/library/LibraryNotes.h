#pragma once

// The student's own notes of one class: an editable plain text that saves itself into that class's
// folder one second after the last keystroke, and at once when asked (before another class opens,
// the window closes or the class is deleted). Saves go to the folder the text was loaded from, so a
// quick switch never writes one class's notes into another. Main thread only; the delayed save
// runs on the schedule given and holds the notes weakly.

#include "text/Schedule.h"

#include <QPlainTextEdit>

#include <memory>

class LibraryNotes final : public QPlainTextEdit
{
    Q_OBJECT

public:
    explicit LibraryNotes(Text::Schedule schedule = {}, QWidget *parent = nullptr);

    // Shows the stored notes of a class (an empty folder: none, nothing to save).
    void load(const QString &folder);
    // Saves now if the text differs from what is stored; cancels the delayed save.
    void flush();

private:
    void changed();

    Text::Schedule schedule_;
    QString folder_;
    int generation_ = 0;   // a delayed save runs only if nothing happened since it was planned
    std::shared_ptr<LibraryNotes *> self_;
};
