#pragma once

// What the session tests share: a documents folder and a clock of their own behind every store
// operation (put back after), a microphone hub over an input the test plays into, files read and
// put whole, and sound made and checked. Dates read in one zone and language whatever the machine
// says: Seoul (UTC+9, no daylight saving) shows that folder names are local time.

#include "captions/MicHub.h"

#include "FakeAudioInput.h"
#include "ManualClock.h"
#include "QtPrinters.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <vector>

class SessionFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    static QByteArray read(const QString &path);
    static void put(const QString &path, const QByteArray &bytes);
    // A 440 Hz sine as interleaved float samples.
    static std::vector<float> tone(int sampleRate, double seconds, int channels = 1);
    // Whether FFmpeg decodes the file to its end as mono AAC at that rate, lasting `seconds` give or
    // take `slack` (5 % unless given).
    static ::testing::AssertionResult isMonoAac(
        const QString &path, int sampleRate, double seconds, std::optional<double> slack = {});

    QTemporaryDir documents_;
    ManualClock clock_;
    FakeAudioInput *input_ = new FakeAudioInput; // owned by the hub
    MicHub hub_ { std::unique_ptr<AudioInput>(input_) };
};
