#include "platform/QtAudioInput.h"
#include "platform/WavFile.h"
#include "platform/WavFileInput.h"

#include "AudioFiles.h"
#include "ManualClock.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cmath>
#include <condition_variable>

using namespace std::chrono_literals;

namespace {

// Half a second of a 440 Hz tone at half of full scale, as sox makes it.
QString tone(const QTemporaryDir &folder, const QString &name, const QStringList &output)
{
    return soxFile(folder.path(), name, {QStringLiteral("-n")}, output,
                   {QStringLiteral("synth"), QStringLiteral("0.5"), QStringLiteral("sine"), QStringLiteral("440"),
                    QStringLiteral("vol"), QStringLiteral("0.5")});
}

struct Collected
{
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<float> samples;
    std::vector<AudioFormat> formats;
    int buffers = 0;

    AudioInput::Receiver receiver()
    {
        return [this](const AudioBuffer &buffer) {
            std::scoped_lock lock(mutex);
            samples.insert(samples.end(), buffer.samples, buffer.samples + buffer.frames * buffer.format.channels);
            formats.push_back(buffer.format);
            ++buffers;
            arrived.notify_all();
        };
    }
    bool waitForBuffers(int count)
    {
        std::unique_lock lock(mutex);
        return arrived.wait_for(lock, 5s, [&] { return buffers >= count; });
    }
    int count()
    {
        std::scoped_lock lock(mutex);
        return buffers;
    }
};

float peak(const std::vector<float> &samples)
{
    float most = 0;
    for (float sample : samples)
        most = std::max(most, std::abs(sample));
    return most;
}

TEST(WavFileTest, ReadsEveryCommonEncodingAsFloats)
{
    QTemporaryDir folder;
    const struct
    {
        QString name;
        QStringList output;
        AudioFormat format;
    } cases[] = {
        {QStringLiteral("s16.wav"), {QStringLiteral("-r16000"), QStringLiteral("-c1"), QStringLiteral("-b16")}, {16'000, 1}},
        {QStringLiteral("s24.wav"), {QStringLiteral("-r44100"), QStringLiteral("-c2"), QStringLiteral("-b24")}, {44'100, 2}},
        {QStringLiteral("s32.wav"), {QStringLiteral("-r48000"), QStringLiteral("-c1"), QStringLiteral("-b32")}, {48'000, 1}},
        {QStringLiteral("u8.wav"), {QStringLiteral("-r8000"), QStringLiteral("-c1"), QStringLiteral("-b8")}, {8'000, 1}},
        {QStringLiteral("f32.wav"),
         {QStringLiteral("-r48000"), QStringLiteral("-c2"), QStringLiteral("-efloating-point"), QStringLiteral("-b32")},
         {48'000, 2}},
        {QStringLiteral("f64.wav"),
         {QStringLiteral("-r22050"), QStringLiteral("-c1"), QStringLiteral("-efloating-point"), QStringLiteral("-b64")},
         {22'050, 1}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name.toStdString());
        const QString path = tone(folder, each.name, each.output);
        ASSERT_FALSE(path.isEmpty());
        WavFile file(path);
        ASSERT_EQ(file.open(), std::nullopt);
        EXPECT_EQ(file.format(), each.format);
        std::vector<float> all, block;
        while (file.read(1'000, block))
            all.insert(all.end(), block.begin(), block.end());
        EXPECT_EQ(qsizetype(all.size()), each.format.sampleRate / 2 * each.format.channels);
        EXPECT_NEAR(peak(all), 0.5f, 0.02f);
    }
}

TEST(WavFileTest, BadFilesGetAWordedReason)
{
    QTemporaryDir folder;
    const auto problem = [](const QString &path) { return WavFile(path).open().value_or(QString()); };

    const QString missing = folder.filePath(QStringLiteral("missing.wav"));
    EXPECT_TRUE(problem(missing).startsWith(u"无法读取音频文件 " + missing + u"："));

    QFile noise(folder.filePath(QStringLiteral("noise.wav")));
    ASSERT_TRUE(noise.open(QIODevice::WriteOnly));
    noise.write(QByteArray(400, '\x5a'));
    noise.close();
    EXPECT_TRUE(problem(noise.fileName()).endsWith(u"不是 WAV 文件"));

    const QString good = tone(folder, QStringLiteral("good.wav"), {QStringLiteral("-r16000"), QStringLiteral("-b16")});
    QFile headerOnly(good);
    ASSERT_TRUE(headerOnly.open(QIODevice::ReadWrite));
    headerOnly.resize(30);
    headerOnly.close();
    EXPECT_TRUE(problem(good).endsWith(u"格式信息不完整")) << problem(good).toStdString();

    const QString ulaw = tone(folder, QStringLiteral("ulaw.wav"), {QStringLiteral("-r8000"), QStringLiteral("-eu-law")});
    EXPECT_TRUE(problem(ulaw).contains(u"不支持的采样格式")) << problem(ulaw).toStdString();
}

TEST(WavFileInputTest, PlaysTheFileAsFastAsTakenThenSilenceInRealTime)
{
    QTemporaryDir folder;
    const QString path = tone(folder, QStringLiteral("stereo.wav"), {QStringLiteral("-r44100"), QStringLiteral("-c2")});
    ManualClock clock;
    WavFileInput input(path, WavFileInput::Pace::AsFastAsPossible, clock);
    EXPECT_EQ(input.format(), (AudioFormat{44'100, 2}));

    Collected collected;
    ASSERT_EQ(input.start(collected.receiver()), std::nullopt);
    // Half a second in 50 ms buffers, then one of silence before the room's real time begins.
    ASSERT_TRUE(collected.waitForBuffers(11));
    ASSERT_TRUE(clock.waitForSleepers(1));
    EXPECT_EQ(collected.count(), 11);
    {
        std::scoped_lock lock(collected.mutex);
        EXPECT_EQ(collected.samples.size(), size_t(44'100 / 2 * 2 + 2'205 * 2));
        EXPECT_NEAR(peak(std::vector<float>(collected.samples.begin(), collected.samples.begin() + 44'100)), 0.5f, 0.02f);
        EXPECT_EQ(peak(std::vector<float>(collected.samples.end() - 2'205 * 2, collected.samples.end())), 0.0f);
        EXPECT_EQ(collected.formats.back(), (AudioFormat{44'100, 2}));
    }

    clock.advance(100ms);
    ASSERT_TRUE(collected.waitForBuffers(13));
    ASSERT_TRUE(clock.waitForSleepers(1));
    EXPECT_EQ(collected.count(), 13) << "silence comes at the pace of the clock";

    input.stop();
    clock.advance(1s);
    Collected again;
    ASSERT_EQ(input.start(again.receiver()), std::nullopt) << "a new run starts from the beginning";
    ASSERT_TRUE(again.waitForBuffers(10));
    EXPECT_EQ(collected.count(), 13) << "the first run ended";
}

TEST(WavFileInputTest, RealTimePaceFollowsTheClock)
{
    QTemporaryDir folder;
    const QString path = tone(folder, QStringLiteral("mono.wav"), {QStringLiteral("-r16000")});
    ManualClock clock;
    WavFileInput input(path, WavFileInput::Pace::RealTime, clock);
    Collected collected;
    ASSERT_EQ(input.start(collected.receiver()), std::nullopt);
    ASSERT_TRUE(clock.waitForSleepers(1));
    EXPECT_EQ(collected.count(), 1);
    clock.advance(50ms);
    ASSERT_TRUE(collected.waitForBuffers(2));
    ASSERT_TRUE(clock.waitForSleepers(1));
    EXPECT_EQ(collected.count(), 2);
    clock.advance(200ms);
    ASSERT_TRUE(collected.waitForBuffers(6));
    ASSERT_TRUE(clock.waitForSleepers(1));
    EXPECT_EQ(collected.count(), 6);
}

TEST(WavFileInputTest, TheUserDefaultMicFileStandsInForTheMicrophone)
{
    QTemporaryDir folder;
    const QString path = tone(folder, QStringLiteral("demo.wav"), {QStringLiteral("-r22050"), QStringLiteral("-c2")});
    QSettings().setValue(QStringLiteral("mic.file"), path);
    EXPECT_EQ(AudioInput::create()->format(), (AudioFormat{22'050, 2}));
    QSettings().remove(QStringLiteral("mic.file"));
    EXPECT_TRUE(dynamic_cast<QtAudioInput *>(AudioInput::create().get())) << "the default input device";
}

TEST(WavFileInputTest, AMissingFileIsNoInput)
{
    QTemporaryDir folder;
    ManualClock clock;
    WavFileInput input(folder.filePath(QStringLiteral("gone.wav")), WavFileInput::Pace::RealTime, clock);
    EXPECT_FALSE(input.format().isValid());
    Collected collected;
    const auto problem = input.start(collected.receiver());
    ASSERT_TRUE(problem);
    EXPECT_TRUE(problem->startsWith(u"无法读取音频文件 "));
    input.stop();
    EXPECT_EQ(collected.count(), 0);
}

} // namespace
