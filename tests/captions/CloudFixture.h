#pragma once

// A fixture for the cloud recogniser's tests: one local server standing in for OpenAI's
// transcription endpoint (through "speech.url") and for the relay (under "/relay"), a keychain in
// a temporary file holding a relay session, and the log read back.

#include "QtPrinters.h"
#include "TestServer.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

class CloudFixture : public ::testing::Test
{
protected:
    static constexpr auto session = "session-token";

    void SetUp() override;
    void TearDown() override;

    // Answers the next request with {"text": text}.
    void say(const QString &text);
    void answer(const QByteArray &body, int status = 200);
    // The lines of the log written since the test began.
    QStringList logLines() const;

    TestServer server;
    QTemporaryDir folder;

private:
    qsizetype logStart_ = 0;
};
