#pragma once

// The object a page sees on its web channel as "native": the page posts named messages through it
// ("line" from the transcript, "calendar" from the feed). Lives and is called on the main thread;
// owned by the PageView that registers it.

#include <QJsonValue>
#include <QObject>
#include <QString>

#include <functional>

class PageBridge final : public QObject
{
    Q_OBJECT

public:
    explicit PageBridge(QObject *parent = nullptr);

    // Called with every message the page posts; by default messages are dropped.
    std::function<void(const QString &name, const QJsonValue &body)> onMessage =
        [](const QString &, const QJsonValue &) {};

    Q_INVOKABLE void post(const QString &name, const QJsonValue &body);
};
