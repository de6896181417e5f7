#pragma once

// A per-user store of small secrets keyed by service and account. Implementations may be
// called from any thread at once. write() replaces an item that is there.

#include <QByteArray>
#include <QString>

#include <optional>

class SecretStore
{
public:
    SecretStore() = default;
    virtual ~SecretStore() = default;
    SecretStore(const SecretStore &) = delete;
    SecretStore &operator=(const SecretStore &) = delete;
    SecretStore(SecretStore &&) = delete;
    SecretStore &operator=(SecretStore &&) = delete;

    virtual std::optional<QByteArray> read(const QString &service, const QString &account) = 0;
    virtual bool write(const QString &service, const QString &account, const QByteArray &data) = 0;
    virtual void remove(const QString &service, const QString &account) = 0;
};
