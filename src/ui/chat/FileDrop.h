#pragma once

// Makes a widget take files dropped on it (and on its children): any drag of URLs is accepted
// as a copy, and the local files among them are handed to `onDrop`. Main thread only; the
// filter is a child of the widget it serves.

#include <QObject>
#include <QStringList>

#include <functional>

class QWidget;

class FileDrop final : public QObject
{
    Q_OBJECT

public:
    explicit FileDrop(QWidget *target);

    std::function<void(const QStringList &paths)> onDrop = [](const QStringList &) {};

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};
