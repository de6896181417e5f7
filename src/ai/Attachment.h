#pragma once

// One file attached to a chat turn, as the user dropped or picked it.

#include <QByteArray>
#include <QString>

struct Attachment
{
    QString name;       // the file's last path component, as the user sees it
    QString mediaType;
    QByteArray data;    // the whole file

    friend bool operator==(const Attachment &, const Attachment &) = default;
};
