#pragma once

// One class's report as a message of the local inbox: born unread and not mailed. A plain value.

#include "report/ClassReport.h"

#include <QDateTime>
#include <QJsonObject>
#include <QString>
#include <QUuid>

#include <optional>

struct InboxMessage
{
    QUuid id = QUuid::createUuid();
    QDateTime date = QDateTime::currentDateTimeUtc();  // when it was made; stored in whole seconds
    QString title;   // the class's title
    ClassReport report;
    bool read = false;
    bool emailed = false;

    QJsonObject toJson() const;
    // Every key is required; a member of the wrong type fails the message.
    static std::optional<InboxMessage> fromJson(const QJsonObject &object);

    friend bool operator==(const InboxMessage &, const InboxMessage &) = default;
};
