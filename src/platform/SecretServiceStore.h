#pragma once

// Secrets in the desktop's Secret Service (GNOME Keyring, KWallet) through QtKeychain. Each call
// runs its job to the end on the calling thread.

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
