#include "ui/chat/FileDrop.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

FileDrop::FileDrop(QWidget *target)
    : QObject(target)
{
    target->setAcceptDrops(true);
    target->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
    case QEvent::DragMove: {
        auto *drag = static_cast<QDragMoveEvent *>(event);
        if (!drag->mimeData()->hasUrls())
            return false;
        drag->setDropAction(Qt::CopyAction);
        drag->accept();
        return true;
    }
    case QEvent::Drop: {
        auto *drop = static_cast<QDropEvent *>(event);
        QStringList paths;
        for (const QUrl &url : drop->mimeData()->urls()) {
            if (url.isLocalFile())
                paths << url.toLocalFile();
        }
        onDrop(paths);
        if (paths.isEmpty())
            drop->ignore();
        else
            drop->acceptProposedAction();
        return true;
    }
    default:
        return QObject::eventFilter(watched, event);
    }
}
