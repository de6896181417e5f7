#pragma once

// The one chat contract every part of the product asks a language model through.
//
// chat() blocks until the whole answer is in: call it on a worker thread, never on the main or
// the audio thread. Any number of calls may run at once on one provider. It never throws: the
// result is the reply, a failure already worded for the user that starts with "（", or no value
// when the model refused.

#include "ai/Turn.h"

#include <QList>
#include <QString>

#include <optional>

class AIProvider
{
public:
    AIProvider() = default;
    virtual ~AIProvider();
    AIProvider(const AIProvider &) = delete;
    AIProvider &operator=(const AIProvider &) = delete;
    AIProvider(AIProvider &&) = delete;
    AIProvider &operator=(AIProvider &&) = delete;

    virtual QString displayName() const = 0;
    // How many characters of transcript a caller puts into one prompt.
    virtual int contextChars() const = 0;
    virtual std::optional<QString> chat(const QString &system, const QList<Turn> &turns) const = 0;
};
