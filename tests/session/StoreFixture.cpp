#include "StoreFixture.h"

#include "session/SessionStore.h"

#include <QDir>
#include <QFile>

void StoreFixture::SetUp()
{
    ASSERT_TRUE(documents_.isValid());
    SessionStore::useDocumentsFolder(documents_.path());
    SessionStore::useClock(&clock_);
}

void StoreFixture::TearDown()
{
    SessionStore::useDocumentsFolder({});
    SessionStore::useClock(nullptr);
}

QString StoreFixture::makeClass(const QString &name, const QDateTime &started, const std::optional<QString> &category)
{
    const QString folder = SessionStore::root() + u'/' + name;
    QDir().mkpath(folder);
    SessionData data = SessionData::make(QStringLiteral("English"), QStringLiteral("Simplified Chinese"), started);
    data.title = name;
    data.category = category;
    SessionStore::write(data, folder);
    return folder;
}

QByteArray StoreFixture::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void StoreFixture::put(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}
