#include "platform/Keychain.h"

#include "platform/FileSecretStore.h"
#include "platform/Log.h"
#include "platform/SecretServiceStore.h"

#include <QStandardPaths>

#include <mutex>

namespace Keychain {

namespace {

struct State
{
    std::mutex mutex;
    std::unique_ptr<SecretStore> store;
};

State &state()
{
    static State instance;
    return instance;
}

std::unique_ptr<SecretStore> systemStore()
{
    if (SecretServiceStore::isAvailable())
        return std::make_unique<SecretServiceStore>();
    const QString path = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
        + QStringLiteral("/secrets.json");
    Log::write(QStringLiteral("No Secret Service answers; keys are kept in ") + path
               + QStringLiteral(", readable only by you."));
    return std::make_unique<FileSecretStore>(path);
}

// Runs an operation on the store, choosing the system store on first use.
template<typename Operation>
auto withStore(Operation operation)
{
    State &s = state();
    std::scoped_lock lock(s.mutex);
    if (!s.store)
        s.store = systemStore();
    return operation(*s.store);
}

QString serviceName()
{
    return QString::fromLatin1(service);
}

} // namespace

std::optional<QString> get(const QString &account)
{
    const auto data = withStore([&](SecretStore &store) { return store.read(serviceName(), account); });
    if (!data || data->isEmpty())
        return std::nullopt;
    return QString::fromUtf8(*data);
}

bool set(const QString &account, const QString &value)
{
    return withStore([&](SecretStore &store) {
        store.remove(serviceName(), account);
        return value.isEmpty() || store.write(serviceName(), account, value.toUtf8());
    });
}

void remove(const QString &account)
{
    withStore([&](SecretStore &store) { store.remove(serviceName(), account); });
}

void useStore(std::unique_ptr<SecretStore> store)
{
    State &s = state();
    std::scoped_lock lock(s.mutex);
    s.store = std::move(store);
}

} // namespace Keychain
