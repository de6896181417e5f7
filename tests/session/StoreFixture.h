#pragma once

// A documents folder and a clock of the test's own for every store operation, put back after.

#include "ManualClock.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

class StoreFixture : public ::testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    // A class folder under the class root holding a record started at `started`.
    QString makeClass(const QString &name, const QDateTime &started,
                      const std::optional<QString> &category = std::nullopt);
    static QByteArray read(const QString &path);
    static void put(const QString &path, const QByteArray &bytes);

    QTemporaryDir documents_;
    ManualClock clock_;
};
