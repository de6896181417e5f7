#pragma once

// The library of saved classes: a searchable list on the left (all classes, one category, the
// classes without one, or the recently deleted), one class on the right with its player and tabs.
// Classes can be renamed, sorted into categories, deleted to the trash and back, erased, and sent
// to the refiner; the class being recorded is listed too, with what can't be done to it refused.
//
// Main thread only. Listing the store runs on a pool thread (a large library takes a while to
// decode) and lands on the main thread; the last listing stays in memory for search and is what
// the window shows at once when it opens, until the fresh one arrives. The first listing starts
// when the window is made, so that the library opens on a filled list. Everything
// else goes through SessionStore on the main thread. Closing hides the window; it lives as long
// as the process.

#include "app/views/LibraryView.h"
#include "text/Schedule.h"
#include "ui/library/LibraryListing.h"

#include <QSet>
#include <QWidget>

#include <memory>
#include <optional>

class LibraryDetail;
class LibraryModel;
class QComboBox;
class QLabel;
class QLineEdit;
class QListView;
class QStackedWidget;

class LibraryWindow final : public QWidget, public LibraryView
{
    Q_OBJECT

public:
    // `notesSchedule` times the delayed save of the student's notes (Qt's timers by default).
    explicit LibraryWindow(Text::Schedule notesSchedule = {}, QWidget *parent = nullptr);

    void show() override;
    bool isVisible() const override;
    void reload() override;
    void refresh(const QString &folder) override;
    void setRefining(const QSet<QString> &folders) override;

    LibraryDetail *detail() const { return detail_; }
    // Whether a listing is under way.
    bool listing() const { return listing_; }
    // The class in the right pane, if any.
    const std::optional<LibraryListing::Entry> &current() const { return current_; }

Q_SIGNALS:
    // A listing has reached the list (after show, reload or refresh).
    void listed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QWidget *sidePane();
    void apply(std::shared_ptr<const LibraryListing::Shelves> shelves);
    void rebuildFilter(const LibraryListing::Shelves &shelves);
    bool trashChosen() const;
    void applyFilter();
    void selectRow(std::optional<int> row);
    void select(const std::optional<LibraryListing::Entry> &entry);
    void commitTitle(const QString &typed);
    void commitCategory(const QString &typed);
    void save(const QString &title, const QString &category);
    void revealCurrent();
    void refineCurrent();
    void restoreCurrent();
    void deleteCurrent();
    void forgetCurrent();
    void say(const QString &text);

    LibraryModel *model_;
    QComboBox *filter_;
    QLineEdit *search_;
    QListView *table_;
    QLabel *empty_;
    QStackedWidget *right_;
    LibraryDetail *detail_;
    std::optional<LibraryListing::Entry> current_;
    // A class refreshed while open: opened anew once the next listing arrives.
    QString reopen_;
    QSet<QString> refining_;
    // One listing at a time; a reload asked for meanwhile makes the running one stale, so it is
    // dropped (unless nothing was listed yet) and another runs.
    bool listing_ = false;
    bool again_ = false;
    bool listedOnce_ = false;
};
