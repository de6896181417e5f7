#pragma once

// What the session tests share: a documents folder and a clock of their own behind every store
// operation (put back after), a microphone hub over an input the test plays into, and sound made
// and checked. Dates read in one zone and language whatever the machine
// says: Seoul (UTC+9, no daylight saving) shows that folder names are local time.

#include "platform/MicHub.h"
#include "session/SessionStore.h"

#include "FakeAudioInput.h"
#include "Files.h"
#include "ManualClock.h"
#include "QtPrinters.h"

#include <QLocale>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <numbers>
#include <vector>

inline const bool sessionTestsPlace = [] {
    setenv("TZ", "Asia/Seoul", 1);
    tzset();
    QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
    return true;
}();

class SessionFixture : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(documents_.isValid());
        SessionStore::useDocumentsFolder(documents_.path());
        SessionStore::useClock(&clock_);
    }
    void TearDown() override
    {
        SessionStore::useDocumentsFolder({});
        SessionStore::useClock(nullptr);
    }

    // A 440 Hz sine as interleaved float samples.
    static std::vector<float> tone(int sampleRate, double seconds, int channels = 1)
    {
        std::vector<float> samples(size_t(sampleRate * seconds) * size_t(channels));
        const double step = 2 * std::numbers::pi * 440.0 / sampleRate;
        for (size_t i = 0; i < samples.size(); ++i)
            samples[i] = float(0.3 * std::sin(step * double(i / size_t(channels))));
        return samples;
    }
    // Whether FFmpeg decodes the file to its end as mono AAC at that rate, lasting `seconds` give or
    // take `slack` (5 % unless given).
    static ::testing::AssertionResult isMonoAac(const QString &path, int sampleRate, double seconds,
                                                std::optional<double> slack = {})
    {
        // One line per decoded frame with its sample count, then one for the stream.
        using namespace Qt::StringLiterals;
        QProcess probe;
        probe.start(u"ffprobe"_s, {u"-v"_s, u"error"_s, u"-select_streams"_s, u"a:0"_s, u"-show_entries"_s,
                                   u"frame=nb_samples:stream=codec_name,sample_rate,channels"_s, u"-of"_s,
                                   u"csv=p=0"_s, path});
        probe.waitForFinished();
        QList<QByteArray> lines = probe.readAllStandardOutput().trimmed().split('\n');
        const QByteArray stream = lines.takeLast();
        qint64 samples = 0;
        for (const QByteArray &line : lines)
            samples += line.toLongLong();
        const double decoded = double(samples) / sampleRate;
        if (stream != "aac," + QByteArray::number(sampleRate) + ",1"
            || std::abs(decoded - seconds) > slack.value_or(seconds / 20))
            return ::testing::AssertionFailure() << '"' << stream.toStdString() << "\", " << decoded << " s";
        return ::testing::AssertionSuccess();
    }

    QTemporaryDir documents_;
    ManualClock clock_;
    FakeAudioInput *input_ = new FakeAudioInput; // owned by the hub
    MicHub hub_ { std::unique_ptr<AudioInput>(input_) };
};
