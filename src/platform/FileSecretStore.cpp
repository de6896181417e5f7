#include "platform/FileSecretStore.h"

#include "text/AtomicFile.h"
#include "text/Json.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

FileSecretStore::FileSecretStore(QString path)
    : path_(std::move(path))
{
}

std::optional<QByteArray> FileSecretStore::read(const QString &service, const QString &account)
{
    std::scoped_lock lock(mutex_);
    const auto items = Text::Json::object(load(), service);
    const auto encoded = items ? Text::Json::string(*items, account) : std::nullopt;
    if (!encoded)
        return std::nullopt;
    return QByteArray::fromBase64(encoded->toLatin1());
}

bool FileSecretStore::write(const QString &service, const QString &account, const QByteArray &data)
{
    std::scoped_lock lock(mutex_);
    QJsonObject all = load();
    QJsonObject items = Text::Json::object(all, service).value_or(QJsonObject());
    items.insert(account, QString::fromLatin1(data.toBase64()));
    all.insert(service, items);
    return store(all);
}

void FileSecretStore::remove(const QString &service, const QString &account)
{
    std::scoped_lock lock(mutex_);
    QJsonObject all = load();
    auto items = Text::Json::object(all, service);
    if (!items || !items->contains(account))
        return;
    items->remove(account);
    all.insert(service, *items);
    store(all);
}

QJsonObject FileSecretStore::load() const
{
    QFile file(path_);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return Text::Json::parseObject(file.readAll()).value_or(QJsonObject());
}

bool FileSecretStore::store(const QJsonObject &all) const
{
    QDir().mkpath(QFileInfo(path_).absolutePath());
    return Text::AtomicFile::write(path_, QJsonDocument(all).toJson(QJsonDocument::Compact),
                             QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}
