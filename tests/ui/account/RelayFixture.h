#pragma once

// The common ground of the account window tests: a relay on 127.0.0.1 that says yes to every
// account and mail path (a test queues the answers that differ), a secret store and an inbox of
// the test's own, and helpers to sign in and read what the relay received.

#include "TestServer.h"

#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

class RelayFixture : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // A new relay and an empty secret store and inbox, for the next case of a table.
    void freshStart();
    // A session for this address, as a finished sign-in leaves it.
    void signIn(const QString &email);
    void queue(int status, const QByteArray &body);
    QList<TestServer::Request> requests() const { return server->requests(); }
    QJsonObject body(qsizetype index) const;
    // The paths of every request so far, in order.
    QStringList paths() const;

    QTemporaryDir folder;
    std::unique_ptr<TestServer> server = std::make_unique<TestServer>();
};
