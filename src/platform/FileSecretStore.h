#pragma once

// Secrets in one JSON file readable only by the user (mode 0600), for desktops where no Secret
// Service answers. Every write replaces the file atomically: on a failed write (a full disk) the
// old file stays whole. Calls from several threads take turns.

#include "platform/SecretStore.h"

#include <QJsonObject>

#include <mutex>

class FileSecretStore final : public SecretStore
{
public:
    explicit FileSecretStore(QString path);

    std::optional<QByteArray> read(const QString &service, const QString &account) override;
    bool write(const QString &service, const QString &account, const QByteArray &data) override;
    void remove(const QString &service, const QString &account) override;

private:
    QJsonObject load() const;
    bool store(const QJsonObject &all) const;

    QString path_;
    std::mutex mutex_;
};
