#pragma once

// The right pane of the library: one class with its name and category (both editable unless the
// class is deleted), the folder, refine, restore and delete buttons, the line of facts under the
// name, the player, and four tabs: transcript, AI notes, word list and the student's own notes.
// It shows what it is given and reports the student's actions through its callbacks; the window
// decides what they do. Main thread only.

#include "text/Schedule.h"
#include "ui/library/LibraryListing.h"

#include <QWidget>

#include <functional>

class IconButton;
class LibraryNotes;
class LibraryPlayer;
class QButtonGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class TranscriptView;

class LibraryDetail final : public QWidget
{
    Q_OBJECT

public:
    enum Tab { transcriptTab, aiNotesTab, wordsTab, myNotesTab };

    struct State
    {
        bool live = false;
        bool refining = false;
    };

    explicit LibraryDetail(Text::Schedule notesSchedule = {}, QWidget *parent = nullptr);

    // Fills every part for a class; its recording opens unless the class is live.
    void showClass(const LibraryListing::Entry &entry, const State &state);
    void setTitle(const QString &title);
    void setCategories(const QStringList &categories);
    void setTab(Tab tab);

    LibraryPlayer *player() const { return player_; }
    LibraryNotes *notes() const { return myNotes_; }
    TranscriptView *transcript() const { return transcript_; }

    std::function<void(const QString &title)> onTitle = [](const QString &) {};
    std::function<void(const QString &category)> onCategory = [](const QString &) {};
    std::function<void()> onReveal = [] {};
    std::function<void()> onRefine = [] {};
    std::function<void()> onRestore = [] {};
    std::function<void()> onDelete = [] {};

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *nameRow();
    void styleTabs();
    QWidget *categoryRow();
    QWidget *tabRow();
    QPlainTextEdit *reader(const QString &name);
    void fillTranscript(const SessionData &data);
    void openAudio(const LibraryListing::Entry &entry, bool live);

    QLineEdit *titleField_;
    QComboBox *categoryBox_;
    IconButton *revealButton_;
    IconButton *refineButton_;
    QPushButton *restoreButton_;
    IconButton *trashButton_;
    QLabel *info_;
    LibraryPlayer *player_;
    QButtonGroup *tabs_;
    QWidget *tabRow_ = nullptr;
    QStackedWidget *pages_;
    TranscriptView *transcript_;
    QPlainTextEdit *aiNotes_;
    QPlainTextEdit *words_;
    LibraryNotes *myNotes_;
};
