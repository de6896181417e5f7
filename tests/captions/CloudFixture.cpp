#include "CloudFixture.h"

#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "platform/Log.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>

void CloudFixture::SetUp()
{
    Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(QStringLiteral("secrets.json"))));
    Keychain::set(QStringLiteral("quillet-session"), QString::fromLatin1(session));
    QSettings settings;
    settings.setValue(QStringLiteral("speech.url"), server.url());
    settings.setValue(QStringLiteral("relay.url"), QString(server.url() + QStringLiteral("/relay")));
    logStart_ = QFileInfo(Log::path()).size();
}

void CloudFixture::TearDown()
{
    QSettings settings;
    settings.remove(QStringLiteral("speech.url"));
    settings.remove(QStringLiteral("relay.url"));
}

void CloudFixture::say(const QString &text)
{
    answer(QJsonDocument(QJsonObject{{QStringLiteral("text"), text}}).toJson(QJsonDocument::Compact));
}

void CloudFixture::answer(const QByteArray &body, int status)
{
    server.enqueue(TestServer::Response::json(body, status));
}

QStringList CloudFixture::logLines() const
{
    QFile file(Log::path());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    file.seek(logStart_);
    return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
}
