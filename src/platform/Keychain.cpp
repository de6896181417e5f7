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
    std::mutex mutex;  // guards the choice of store only, never held while the store works
    std::shared_ptr<SecretStore> store;
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
    std::shared_ptr<SecretStore> store;
    {
        State &s = state();
        std::scoped_lock lock(s.mutex);
        if (!s.store)
            s.store = systemStore();
        store = s.store;
    }
    return operation(*store);
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
    // What users paste often carries a blank or a line break that is no part of a key.
    const QString secret = value.trimmed();
    return withStore([&](SecretStore &store) {
        if (secret.isEmpty()) {
            store.remove(serviceName(), account);
            return true;
        }
        // Written over the old item, never after deleting it: a failed write keeps the old key.
        return store.write(serviceName(), account, secret.toUtf8());
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
