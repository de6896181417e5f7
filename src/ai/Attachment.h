#pragma once

// One file attached to a chat turn, as the user dropped or picked it: a plain value, copied
// freely and usable from any thread. load() reads a file on the calling thread (at most
// maxBytes), which is quick enough for a drop or a file dialog on the main thread.

#include "ai/AttachmentError.h"

#include <QByteArray>
#include <QString>

#include <variant>

struct Attachment
{
    // Decimal megabytes, as the refusal says.
    static constexpr qsizetype maxBytes = 10'000'000;

    QString name;       // the file's last path component, as the user sees it
    QString mediaType;
    QByteArray data;    // the whole file

    bool isImage() const;
    bool isPDF() const;
    bool isText() const;
    // Standard Base64 without line breaks.
    QString base64() const;
    // The file as text for a model, headed by its name; bytes that aren't UTF-8 become U+FFFD.
    QString inlineText() const;

    // Checks in this order: readable, not larger than maxBytes, a known extension.
    static std::variant<Attachment, AttachmentError> load(const QString &path);

    friend bool operator==(const Attachment &, const Attachment &) = default;
};
