#include "session/AacWriter.h"

#include "AudioFile.h"
#include "Tone.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

TEST(AacWriter, WritesMonoAacThatDecodesToItsLength)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("录音.m4a"));
    for (const int rate : {48'000, 44'100, 16'000}) {
        AacWriter writer;
        ASSERT_TRUE(writer.open(path, rate, 64'000)) << rate;
        const std::vector<float> samples = tone(rate, 7.3);
        // Uneven pieces, as a microphone hands them over.
        for (size_t used = 0; used < samples.size(); used += 4'410)
            EXPECT_TRUE(writer.write(samples.data() + used, qsizetype(std::min<size_t>(4'410, samples.size() - used))));
        writer.close();
        EXPECT_FALSE(writer.isOpen());

        const auto decoded = AudioFile::decode(path);
        ASSERT_TRUE(decoded) << rate;
        EXPECT_EQ(decoded->codec, QStringLiteral("aac"));
        EXPECT_EQ(decoded->channels, 1);
        EXPECT_EQ(decoded->sampleRate, rate);
        EXPECT_NEAR(decoded->seconds, 7.3, 7.3 * 0.05) << rate;
    }
}

TEST(AacWriter, BitRateSetsTheSize)
{
    QTemporaryDir folder;
    qint64 sizes[2] = {};
    const int rates[2] = {32'000, 64'000};
    for (int i = 0; i < 2; ++i) {
        const QString path = folder.filePath(QString::number(rates[i]) + u".m4a");
        AacWriter writer;
        ASSERT_TRUE(writer.open(path, 48'000, rates[i]));
        const std::vector<float> samples = tone(48'000, 20);
        writer.write(samples.data(), qsizetype(samples.size()));
        writer.close();
        sizes[i] = QFile(path).size();
        // Within a fifth of bit rate times length.
        EXPECT_NEAR(double(sizes[i]), rates[i] / 8.0 * 20, rates[i] / 8.0 * 20 * 0.2) << rates[i];
    }
    EXPECT_GT(sizes[1], sizes[0] * 3 / 2);
}

TEST(AacWriter, RefusesWhatItCannotMake)
{
    QTemporaryDir folder;
    AacWriter writer;
    EXPECT_FALSE(writer.open(folder.filePath(QStringLiteral("missing/录音.m4a")), 48'000, 64'000));
    EXPECT_FALSE(writer.open(folder.filePath(QStringLiteral("odd.m4a")), 5'000, 64'000));
    EXPECT_FALSE(writer.isOpen());
    const float sample = 0;
    EXPECT_FALSE(writer.write(&sample, 1));
    writer.close();   // nothing open: nothing happens
}
