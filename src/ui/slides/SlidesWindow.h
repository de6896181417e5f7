#pragma once

// The slide window "课件": shows the lecture's slides as a PDF one page at a time and keeps them
// on the page the teacher is talking about (the rules live in SlideFollower). Presentations are
// turned into PDFs by LibreOffice first (SlideConverter).
//
// Main thread only. Closing the window only hides it; it lives as long as its owner. The page
// texts of a deck are read on the network pool, so a long deck never holds the window up.

#include "app/views/SlidesView.h"
#include "text/Schedule.h"
#include "ui/slides/SlideConverter.h"
#include "ui/slides/SlideFollower.h"

#include <QWidget>

class QLabel;
class QPdfDocument;
class QPdfView;
class SlidesBar;

class SlidesWindow final : public QWidget, public SlidesView
{
    Q_OBJECT

public:
    explicit SlidesWindow(Text::Schedule schedule = Text::mainThreadSchedule(), QWidget *parent = nullptr);
    ~SlidesWindow() override;

    // Whether a file is a deck this window can show: a PDF or a presentation LibreOffice converts.
    static bool isSlides(const QString &path);

    void heard(const QString &line) override;
    void stopFollowing() override;
    void toggle() override;
    void open(const QString &path) override;

protected:
    void changeEvent(QEvent *event) override;
    void moveEvent(QMoveEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildFollower();
    void pick();
    void load(const QString &path);
    void readPages(const QString &path);
    void showEmpty(const QString &text);
    void goTo(int page);
    int currentPage() const;
    void pageChanged(int page);
    void refreshPageLabel();
    void autoChanged(bool on);
    void goSuggested();
    void fitEmpty();
    void paintLooks();
    void saveFrame();

    SlideFollower follower_;
    SlideConverter converter_;
    SlidesBar *bar_;
    QPdfView *pdfView_;
    QPdfDocument *document_ = nullptr;
    QLabel *empty_;
    int reading_ = 0;  // the deck whose page texts are awaited; older readings are dropped
};
