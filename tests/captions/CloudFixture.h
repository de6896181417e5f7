#pragma once

// A fixture for the cloud recogniser's tests: one local server standing in for OpenAI's
// transcription endpoint (through "speech.url") and for the relay (under "/relay"), a keychain in
// a temporary file holding an OpenAI key and a relay session, and the log read back.

#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "platform/Log.h"
#include "text/Regex.h"

#include "QtPrinters.h"
#include "TestServer.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

class CloudFixture : public ::testing::Test
{
protected:
    static constexpr auto session = "session-token";

    void SetUp() override
    {
        Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(QStringLiteral("secrets.json"))));
        Keychain::set(QStringLiteral("quillet-session"), QString::fromLatin1(session));
        Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-test"));
        QSettings().setValue(QStringLiteral("speech.url"), server.url());
        QSettings().setValue(QStringLiteral("relay.url"), QString(server.url() + QStringLiteral("/relay")));
        logStart_ = QFile(Log::path()).size();
    }
    void TearDown() override
    {
        QSettings().remove(QStringLiteral("speech.url"));
        QSettings().remove(QStringLiteral("relay.url"));
    }

    // Answers the next request with {"text": text}.
    void say(const QString &text)
    {
        const QJsonObject answer{{QStringLiteral("text"), text}};
        server.enqueue(TestServer::Response::json(QJsonDocument(answer).toJson(QJsonDocument::Compact)));
    }
    // The messages logged since the test began, each with its time stamp taken off.
    QStringList logged() const
    {
        static const Text::Regex stamp(QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ "));
        QFile file(Log::path());
        QStringList messages;
        if (file.open(QIODevice::ReadOnly) && file.seek(logStart_)) {
            for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts))
                messages << stamp.replace(line, {});
        }
        return messages;
    }

    TestServer server;
    QTemporaryDir folder;

private:
    qint64 logStart_ = 0;
};
