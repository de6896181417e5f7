#pragma once

// One message of a conversation with a chat model, oldest first in a list.

#include "ai/Attachment.h"

#include <QList>
#include <QString>

struct Turn
{
    QString role;  // "user" or "assistant"
    QString content;
    QList<Attachment> attachments;

    friend bool operator==(const Turn &, const Turn &) = default;
};
