#pragma once

// A fixture for chat client tests: one local server standing in for all three vendors and the
// relay (the base-address user defaults point at it, the relay under "/relay"), and a keychain in
// a temporary file.

#include "ai/AIProvider.h"

#include "QtPrinters.h"
#include "TestServer.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

inline void PrintTo(const QJsonObject &json, std::ostream *out)
{
    *out << QJsonDocument(json).toJson(QJsonDocument::Compact).constData();
}

class VendorTest : public ::testing::Test
{
protected:
    void SetUp() override;

    static std::optional<QString> ask(const AIProvider &provider);
    static QJsonObject object(const QByteArray &json);
    static Turn user(const QString &content, const QList<Attachment> &attachments = {});
    // Claude, ChatGPT and Gemini, direct; no key or model is needed by the local server.
    static std::vector<std::unique_ptr<AIProvider>> vendors(
        std::chrono::milliseconds timeout = std::chrono::seconds(30));

    TestServer server;
    QTemporaryDir folder;
};
