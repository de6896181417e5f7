#pragma once

// A fixture for chat client tests: one local server standing in for all three vendors and the
// relay (the base-address user defaults point at it, the relay under "/relay"), and a keychain in
// a temporary file.

#include "ai/Attachment.h"
#include "ai/Turn.h"

#include "QtPrinters.h"
#include "TestServer.h"

#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

class VendorTest : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // The body of the only request so far, parsed; fails the test when there isn't exactly one.
    QJsonObject onlyBody() const;
    TestServer::Request onlyRequest() const;
    // Answers the next request with this JSON text and status.
    void answer(const QByteArray &json, int status = 200);

    static QJsonObject object(const char *json);
    static Turn user(const QString &content, const QList<Attachment> &attachments = {});
    static Turn assistant(const QString &content, const QList<Attachment> &attachments = {});
    static Attachment file(const QString &name, const QString &mediaType, const QByteArray &data);

    TestServer server;
    QTemporaryDir folder;
};
