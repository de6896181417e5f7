#include "platform/SecretServiceStore.h"

#include <qt6keychain/keychain.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QEventLoop>
#include <QTimer>

namespace {

constexpr int jobTimeoutMs = 10000;

// Runs the job in a local loop; a service that never answers counts as an error.
QKeychain::Error run(QKeychain::Job &job)
{
    QEventLoop loop;
    bool finished = false;
    QObject::connect(&job, &QKeychain::Job::finished, &loop, [&] {
        finished = true;
        loop.quit();
    });
    QTimer::singleShot(jobTimeoutMs, &loop, &QEventLoop::quit);
    job.setAutoDelete(false);
    job.start();
    if (!finished)
        loop.exec();
    return finished ? job.error() : QKeychain::OtherError;
}

} // namespace

bool SecretServiceStore::isAvailable()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface())
        return false;
    const QString name = QStringLiteral("org.freedesktop.secrets");
    if (!bus.interface()->isServiceRegistered(name)
        && !bus.interface()->activatableServiceNames().value().contains(name))
        return false;
    QKeychain::ReadPasswordJob probe(QStringLiteral("com.marrowline.probe"));
    probe.setKey(QStringLiteral("probe"));
    const QKeychain::Error error = run(probe);
    return error == QKeychain::NoError || error == QKeychain::EntryNotFound;
}

std::optional<QByteArray> SecretServiceStore::read(const QString &service, const QString &account)
{
    QKeychain::ReadPasswordJob job(service);
    job.setKey(account);
    if (run(job) != QKeychain::NoError)
        return std::nullopt;
    return job.binaryData();
}

bool SecretServiceStore::write(const QString &service, const QString &account, const QByteArray &data)
{
    QKeychain::WritePasswordJob job(service);
    job.setKey(account);
    job.setBinaryData(data);
    return run(job) == QKeychain::NoError;
}

void SecretServiceStore::remove(const QString &service, const QString &account)
{
    QKeychain::DeletePasswordJob job(service);
    job.setKey(account);
    run(job);
}
