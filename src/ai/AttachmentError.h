#pragma once

// Why a file could not be attached, worded for the user.

#include <QString>

struct AttachmentError
{
    QString message;

    friend bool operator==(const AttachmentError &, const AttachmentError &) = default;
};
