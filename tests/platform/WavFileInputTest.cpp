#include "platform/QtAudioInput.h"
#include "platform/WavFile.h"
#include "platform/WavFileInput.h"

#include "AudioFiles.h"
#include "Files.h"
#include "ManualClock.h"
#include "QtPrinters.h"

#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <span>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Half a second of a 440 Hz tone at half of full scale, as sox makes it.
QString tone(const QTemporaryDir &folder, const QString &name, const QStringList &output)
{
    return soxFile(folder.path(), name, {u"-n"_s}, output, {u"synth"_s, u"0.5"_s, u"sine"_s, u"440"_s, u"vol"_s, u"0.5"_s});
}

float peak(std::span<const float> samples)
{
    return std::abs(std::ranges::max(samples, {}, [](float sample) { return std::abs(sample); }));
}

// The samples an input gave on its own thread.
struct Collected
{
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<float> samples;
    AudioFormat format;   // the last buffer's
    int buffers = 0;

    AudioInput::Receiver receiver()
    {
        return [this](const AudioBuffer &buffer) {
            std::scoped_lock lock(mutex);
            samples.insert(samples.end(), buffer.samples, buffer.samples + buffer.frames * buffer.format.channels);
            format = buffer.format;
            ++buffers;
            arrived.notify_all();
        };
    }
    // The buffers there are once `count` came (or 5 s passed) and the player sleeps on the clock.
    int settled(int count, const ManualClock &clock)
    {
        {
            std::unique_lock lock(mutex);
            arrived.wait_for(lock, 5s, [&] { return buffers >= count; });
        }
        EXPECT_TRUE(clock.waitForSleepers(1));
        std::scoped_lock lock(mutex);
        return buffers;
    }
};

TEST(WavFileTest, ReadsEveryCommonEncodingAsFloats)
{
    QTemporaryDir folder;
    const struct
    {
        QString name;
        QStringList output;
        AudioFormat format;
    } cases[] = {
        {u"s16.wav"_s, {u"-r16000"_s, u"-c1"_s, u"-b16"_s}, {16'000, 1}},
        {u"s24.wav"_s, {u"-r44100"_s, u"-c2"_s, u"-b24"_s}, {44'100, 2}},
        {u"s32.wav"_s, {u"-r48000"_s, u"-c1"_s, u"-b32"_s}, {48'000, 1}},
        {u"u8.wav"_s, {u"-r8000"_s, u"-c1"_s, u"-b8"_s}, {8'000, 1}},
        {u"f32.wav"_s, {u"-r48000"_s, u"-c2"_s, u"-efloating-point"_s, u"-b32"_s}, {48'000, 2}},
        {u"f64.wav"_s, {u"-r22050"_s, u"-c1"_s, u"-efloating-point"_s, u"-b64"_s}, {22'050, 1}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name.toStdString());
        WavFile file(tone(folder, each.name, each.output));
        ASSERT_EQ(file.open(), std::nullopt);
        EXPECT_EQ(file.format(), each.format);
        std::vector<float> all, block;
        while (file.read(1'000, block))
            all.insert(all.end(), block.begin(), block.end());
        EXPECT_EQ(qsizetype(all.size()), each.format.sampleRate / 2 * each.format.channels);
        EXPECT_NEAR(peak(all), 0.5f, 0.02f);
    }
}

TEST(WavFileTest, BadFilesGetAWordedReasonAndMakeNoInput)
{
    QTemporaryDir folder;
    const auto problem = [](const QString &path) { return WavFile(path).open().value_or(QString()); };
    const QString missing = folder.filePath(u"missing.wav"_s);
    EXPECT_TRUE(problem(missing).startsWith(u"无法读取音频文件 " + missing + u"：")) << problem(missing);

    ManualClock clock;
    WavFileInput input(missing, WavFileInput::Pace::RealTime, clock);
    EXPECT_FALSE(input.format().isValid());
    Collected collected;
    EXPECT_EQ(input.start(collected.receiver()), problem(missing));
    input.stop();
    EXPECT_EQ(collected.buffers, 0);

    const QString noise = writeFile(folder.filePath(u"noise.wav"_s), QByteArray(400, '\x5a'));
    EXPECT_TRUE(problem(noise).endsWith(u"不是 WAV 文件"));

    const QString headerOnly = tone(folder, u"cut.wav"_s, {u"-r16000"_s, u"-b16"_s});
    ASSERT_TRUE(QFile::resize(headerOnly, 30));
    EXPECT_TRUE(problem(headerOnly).endsWith(u"格式信息不完整")) << problem(headerOnly);

    const QString ulaw = tone(folder, u"ulaw.wav"_s, {u"-r8000"_s, u"-eu-law"_s});
    EXPECT_TRUE(problem(ulaw).contains(u"不支持的采样格式")) << problem(ulaw);
}

// A hand-made RIFF file: "WAVE", then each chunk as its id, its claimed size and its bytes.
QByteArray riff(const QList<std::tuple<QByteArray, quint32, QByteArray>> &chunks)
{
    QByteArray body("WAVE");
    for (const auto &[id, size, bytes] : chunks) {
        body += id;
        body += QByteArray(4, 0);
        qToLittleEndian(size, body.data() + body.size() - 4);
        body += bytes;
    }
    QByteArray file("RIFF" + QByteArray(4, 0) + body);
    qToLittleEndian(quint32(body.size()), file.data() + 4);
    return file;
}

QByteArray fmt(quint16 tag, quint16 channels, quint32 rate, quint16 bits)
{
    QByteArray bytes(16, 0);
    qToLittleEndian(tag, bytes.data());
    qToLittleEndian(channels, bytes.data() + 2);
    qToLittleEndian(rate, bytes.data() + 4);
    qToLittleEndian(bits, bytes.data() + 14);
    return bytes;
}

TEST(WavFileTest, HostileHeadersAreBoundedByTheFileAndWorded)
{
    QTemporaryDir folder;
    const QByteArray mono = fmt(1, 1, 16'000, 16);
    const QByteArray tenFrames(20, '\x10');
    const struct
    {
        const char *name;
        QByteArray bytes;
        QString problem;   // empty: it opens
        qsizetype frames;
    } cases[] = {
        {"format chunk claiming 4 GB", riff({{"fmt ", 0xFFFF'FFFF, mono}}), u"格式信息不完整"_s, 0},
        {"65,535 channels at 192 kHz",
         riff({{"fmt ", 16, fmt(1, 65'535, 192'000, 16)}, {"data", 60, QByteArray(60, 1)}}), u"声道数无效（65535）"_s, 0},
        {"no channels", riff({{"fmt ", 16, fmt(1, 0, 16'000, 16)}}), u"声道数无效（0）"_s, 0},
        {"rate of 4 GHz", riff({{"fmt ", 16, fmt(3, 2, 4'000'000'000u, 32)}}), u"采样率无效（4000000000）"_s, 0},
        {"rate of 100 Hz", riff({{"fmt ", 16, fmt(1, 1, 100, 16)}}), u"采样率无效（100）"_s, 0},
        {"12-bit samples", riff({{"fmt ", 16, fmt(1, 1, 16'000, 12)}}), u"不支持的采样格式（1，12 位）"_s, 0},
        {"data before format", riff({{"data", 20, tenFrames}, {"fmt ", 16, mono}}), u"缺少格式信息"_s, 0},
        {"chunk claiming more than the file", riff({{"fmt ", 16, mono}, {"LIST", 0x7FFF'FFFF, "x"}}),
         u"找不到声音数据"_s, 0},
        {"data claiming 4 GB", riff({{"fmt ", 16, mono}, {"data", 0xFFFF'FFFF, tenFrames}}), QString(), 10},
        {"long format chunk", riff({{"fmt ", 40, mono + QByteArray(24, 0)}, {"data", 20, tenFrames}}), QString(),
         10},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.name);
        const QString path = writeFile(folder.filePath(QString::fromLatin1(each.name)), each.bytes);
        WavFile file(path);
        const auto problem = file.open();
        const QString worded = u"无法读取音频文件 " + path + u"：" + each.problem;
        EXPECT_EQ(problem.value_or(QString()), each.problem.isEmpty() ? QString() : worded);
        std::vector<float> samples;
        qsizetype frames = 0;
        while (!problem && file.read(9'600, samples))
            frames += qsizetype(samples.size());
        EXPECT_EQ(frames, each.frames);
    }
}

TEST(WavFileInputTest, PlaysTheFileAsFastAsTakenThenSilenceInRealTime)
{
    QTemporaryDir folder;
    const QString path = tone(folder, u"stereo.wav"_s, {u"-r44100"_s, u"-c2"_s});
    ManualClock clock;
    WavFileInput input(path, WavFileInput::Pace::AsFastAsPossible, clock);
    EXPECT_EQ(input.format(), (AudioFormat{44'100, 2}));
    Collected collected;
    ASSERT_EQ(input.start(collected.receiver()), std::nullopt);
    // Half a second in 50 ms buffers, then one of silence before the room's real time begins.
    ASSERT_EQ(collected.settled(11, clock), 11);
    {
        std::scoped_lock lock(collected.mutex);
        const std::span<const float> all(collected.samples);
        ASSERT_EQ(all.size(), size_t(44'100 / 2 * 2 + 2'205 * 2));
        EXPECT_NEAR(peak(all.first(44'100)), 0.5f, 0.02f);
        EXPECT_EQ(peak(all.last(2'205 * 2)), 0.0f);
        EXPECT_EQ(collected.format, (AudioFormat{44'100, 2}));
    }
    clock.advance(100ms);
    EXPECT_EQ(collected.settled(13, clock), 13) << "silence comes at the pace of the clock";

    input.stop();
    clock.advance(1s);
    Collected again;
    ASSERT_EQ(input.start(again.receiver()), std::nullopt) << "a new run starts from the beginning";
    EXPECT_EQ(again.settled(11, clock), 11);
    EXPECT_EQ(collected.settled(13, clock), 13) << "the first run ended";
}

TEST(WavFileInputTest, RealTimePaceFollowsTheClock)
{
    QTemporaryDir folder;
    ManualClock clock;
    WavFileInput input(tone(folder, u"mono.wav"_s, {u"-r16000"_s}), WavFileInput::Pace::RealTime, clock);
    Collected collected;
    ASSERT_EQ(input.start(collected.receiver()), std::nullopt);
    EXPECT_EQ(collected.settled(1, clock), 1);
    clock.advance(50ms);
    EXPECT_EQ(collected.settled(2, clock), 2);
    clock.advance(200ms);
    EXPECT_EQ(collected.settled(6, clock), 6);
}

TEST(AudioInputTest, TheUserDefaultMicFileStandsInForTheInputDevice)
{
    QTemporaryDir folder;
    QSettings().setValue(u"mic.file"_s, tone(folder, u"demo.wav"_s, {u"-r22050"_s, u"-c2"_s}));
    EXPECT_EQ(AudioInput::create()->format(), (AudioFormat{22'050, 2}));
    QSettings().remove(u"mic.file"_s);
    const auto device = AudioInput::create();
    ASSERT_TRUE(dynamic_cast<QtAudioInput *>(device.get())) << "the default input device";
    if (qEnvironmentVariableIsSet("PULSE_SERVER"))
        GTEST_SKIP() << "a sound server is configured";
    EXPECT_FALSE(device->format().isValid()) << "without a sound server there is no input";
    int buffers = 0;
    EXPECT_EQ(device->start([&](const AudioBuffer &) { ++buffers; }), u"找不到音频输入设备");
    device->stop();
    EXPECT_EQ(buffers, 0);
}

} // namespace
