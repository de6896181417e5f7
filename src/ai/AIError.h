#pragma once

// The one exception of the product: a provider factory was asked for a client that runs on the
// user's own key, and no key is stored. The caller keeps running without that client.

#include <QByteArray>
#include <QString>

#include <exception>

class AIError final : public std::exception
{
public:
    enum class Kind { MissingKey };

    static AIError missingKey(const QString &displayName);

    Kind kind() const { return kind_; }
    // The provider's name, as in "Claude".
    const QString &displayName() const { return displayName_; }
    const char *what() const noexcept override { return what_.constData(); }

private:
    AIError(Kind kind, const QString &displayName);

    Kind kind_;
    QString displayName_;
    QByteArray what_;
};
