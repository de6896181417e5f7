#include "platform/SecretServiceStore.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QThread>

#include <libsecret/secret.h>

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <thread>

using namespace std::chrono_literals;

namespace {

const SecretSchema &schema()
{
    static const SecretSchema quillet = {
        "com.marrowline.Quillet", SECRET_SCHEMA_NONE,
        {{"service", SECRET_SCHEMA_ATTRIBUTE_STRING}, {"account", SECRET_SCHEMA_ATTRIBUTE_STRING}, {nullptr, {}}},
        0, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr};
    return quillet;
}

// The main thread serves user input: it waits only briefly. Others may wait for a slow unlock.
std::chrono::milliseconds bound()
{
    const QCoreApplication *application = QCoreApplication::instance();
    return application && QThread::currentThread() == application->thread() ? 1500ms : 10s;
}

// Runs the call on a detached thread and waits for it within the bound; no value when it took
// longer. The thread owns everything it uses, so a call that hangs harms nobody.
template<typename Result>
std::optional<Result> bounded(std::function<Result()> call)
{
    auto promise = std::make_shared<std::promise<Result>>();
    std::future<Result> answer = promise->get_future();
    std::thread([promise, call = std::move(call)] { promise->set_value(call()); }).detach();
    if (answer.wait_for(bound()) != std::future_status::ready)
        return std::nullopt;
    return answer.get();
}

// Frees the error; true when there was one.
bool failed(GError *error)
{
    if (!error)
        return false;
    g_error_free(error);
    return true;
}

struct Lookup
{
    bool ok = false;
    std::optional<QByteArray> data;
};

Lookup lookup(const QByteArray &service, const QByteArray &account)
{
    GError *error = nullptr;
    gchar *password = secret_password_lookup_sync(&schema(), nullptr, &error, "service", service.constData(),
                                                  "account", account.constData(), nullptr);
    Lookup result{!failed(error), std::nullopt};
    if (password) {
        result.data = QByteArray(password);
        secret_password_free(password);
    }
    return result;
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
    const auto probe = bounded<Lookup>([] { return lookup("com.marrowline.probe", "probe"); });
    return probe && probe->ok;
}

std::optional<QByteArray> SecretServiceStore::read(const QString &service, const QString &account)
{
    const auto found = bounded<Lookup>([s = service.toUtf8(), a = account.toUtf8()] { return lookup(s, a); });
    return found ? found->data : std::nullopt;
}

bool SecretServiceStore::write(const QString &service, const QString &account, const QByteArray &data)
{
    const QByteArray label = "Quillet: " + service.toUtf8() + " / " + account.toUtf8();
    return bounded<bool>([s = service.toUtf8(), a = account.toUtf8(), data, label] {
               GError *error = nullptr;
               const gboolean stored = secret_password_store_sync(
                   &schema(), SECRET_COLLECTION_DEFAULT, label.constData(), data.constData(), nullptr, &error,
                   "service", s.constData(), "account", a.constData(), nullptr);
               return !failed(error) && stored;
           })
        .value_or(false);
}

void SecretServiceStore::remove(const QString &service, const QString &account)
{
    bounded<bool>([s = service.toUtf8(), a = account.toUtf8()] {
        GError *error = nullptr;
        secret_password_clear_sync(&schema(), nullptr, &error, "service", s.constData(), "account",
                                   a.constData(), nullptr);
        return !failed(error);
    });
}
