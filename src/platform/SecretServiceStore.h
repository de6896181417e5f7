#pragma once

// Secrets in the desktop's Secret Service (GNOME Keyring, KWallet) through libsecret's blocking
// calls. Each call runs on a short-lived thread of its own, so no caller spins an event loop, and
// the caller waits a bounded time (briefly on the main thread, where user input must not stall):
// a service that hasn't answered by then counts as a failure, and its late answer is dropped.

#include "platform/SecretStore.h"

class SecretServiceStore final : public SecretStore
{
public:
    // Whether a Secret Service answers on the session bus (a read that may find nothing).
    static bool isAvailable();

    std::optional<QByteArray> read(const QString &service, const QString &account) override;
    bool write(const QString &service, const QString &account, const QByteArray &data) override;
    void remove(const QString &service, const QString &account) override;
};
