#include "ui/slides/SlidesDrop.h"

#include "ui/slides/SlidesWindow.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>

SlidesDrop::SlidesDrop(QWidget *parent)
    : QWidget(parent)
{
    setAcceptDrops(true);
}

void SlidesDrop::dragEnterEvent(QDragEnterEvent *event)
{
    // Any drag is welcome; what it carries is looked at when it is dropped.
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void SlidesDrop::dragMoveEvent(QDragMoveEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void SlidesDrop::dropEvent(QDropEvent *event)
{
    QStringList paths;
    for (const QUrl &url : event->mimeData()->urls())
        if (url.isLocalFile() && SlidesWindow::isSlides(url.toLocalFile()))
            paths.append(url.toLocalFile());
    if (paths.isEmpty()) {
        event->ignore();
        return;
    }
    event->setDropAction(Qt::CopyAction);
    event->accept();
    onDrop(paths);
}
