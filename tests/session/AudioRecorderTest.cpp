#include "session/AudioRecorder.h"

#include "session/SessionStore.h"

#include "AudioFile.h"
#include "FakeMicrophone.h"
#include "Tone.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>

TEST(AudioRecorder, RecordsTheMicrophoneAsMonoAacOfTheRightLength)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("录音.m4a"));
    FakeMicrophone microphone;
    microphone.input().delivered = {44'100, 2};
    AudioRecorder recorder(microphone.hub());
    EXPECT_EQ(recorder.bitRate(), 64'000);
    recorder.setBitRate(32'000);
    ASSERT_EQ(recorder.start(path), std::nullopt);
    EXPECT_TRUE(microphone.hub().running());
    microphone.input().play(tone(44'100, 12.0, 2), 4'096);
    recorder.stop();
    EXPECT_FALSE(microphone.hub().running());

    const auto decoded = AudioFile::decode(path);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->codec, QStringLiteral("aac"));
    EXPECT_EQ(decoded->channels, 1);
    EXPECT_EQ(decoded->sampleRate, 44'100);
    EXPECT_NEAR(decoded->seconds, 12.0, 12.0 * 0.05);
    EXPECT_NEAR(double(QFile(path).size()), 32'000 / 8 * 12.0, 32'000 / 8 * 12.0 * 0.2);

    // After stop, sound goes nowhere and the file stays complete.
    microphone.input().play(tone(44'100, 3.0, 2), 4'096);
    EXPECT_NEAR(AudioFile::decode(path)->seconds, 12.0, 12.0 * 0.05);
}

TEST(AudioRecorder, DropsSoundOfAnotherRateAndRecordsAgainIntoANewFile)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("录音.m4a"));
    FakeMicrophone microphone;
    microphone.input().delivered = {48'000, 1};
    AudioRecorder recorder(microphone.hub());
    ASSERT_EQ(recorder.start(path), std::nullopt);
    microphone.input().play(tone(48'000, 5.0), 4'800);
    // The input changes under the running recording: that sound can't join this file.
    microphone.input().delivered = {24'000, 1};
    microphone.input().play(tone(24'000, 2.0), 2'400);
    recorder.stop();
    EXPECT_NEAR(AudioFile::decode(path)->seconds, 5.0, 5.0 * 0.05);

    const QString next = folder.filePath(QStringLiteral("next.m4a"));
    ASSERT_EQ(recorder.start(next), std::nullopt);
    microphone.input().play(tone(24'000, 2.0), 2'400);
    recorder.stop();
    recorder.stop();
    const auto decoded = AudioFile::decode(next);
    EXPECT_EQ(decoded->sampleRate, 24'000);
    EXPECT_NEAR(decoded->seconds, 2.0, 2.0 * 0.05);
    EXPECT_EQ(microphone.input().counts().starts, 2);
    EXPECT_EQ(microphone.input().counts().stops, 2);
}

namespace {

// An input whose device is there but won't open.
class BusyInput final : public AudioInput
{
public:
    AudioFormat format() override { return {48'000, 1}; }
    std::optional<QString> start(Receiver) override { return QStringLiteral("设备正被其他程序占用"); }
    void stop() override {}
};

} // namespace

TEST(AudioRecorder, WordsTheProblemsOfStarting)
{
    QTemporaryDir folder;
    FakeMicrophone microphone;
    AudioRecorder recorder(microphone.hub());
    microphone.input().failure = QStringLiteral("没有输入设备");
    EXPECT_EQ(recorder.start(folder.filePath(QStringLiteral("a.m4a"))), QStringLiteral("找不到麦克风"));
    microphone.input().failure.reset();
    EXPECT_EQ(recorder.start(folder.filePath(QStringLiteral("missing/a.m4a"))), QStringLiteral("无法创建录音文件"));
    EXPECT_EQ(microphone.input().counts().starts, 0);

    MicHub busy(std::make_unique<BusyInput>());
    AudioRecorder refused(busy);
    EXPECT_EQ(refused.start(folder.filePath(QStringLiteral("b.m4a"))), QStringLiteral("录音启动失败：设备正被其他程序占用"));
    EXPECT_FALSE(busy.running());
    EXPECT_TRUE(AudioFile::decode(folder.filePath(QStringLiteral("b.m4a")))) << "closed, not left half-made";
}

TEST(AudioRecorder, AClassKilledMidwayLeavesPlayableAudioAndAValidRecord)
{
    QTemporaryDir documents;
    const QString wav = documents.filePath(QStringLiteral("class.wav"));
    ASSERT_EQ(QProcess::execute(QStringLiteral("sox"), {QStringLiteral("-n"), QStringLiteral("-r"), QStringLiteral("48000"),
                                                       QStringLiteral("-c"), QStringLiteral("2"), wav,
                                                       QStringLiteral("synth"), QStringLiteral("5"),
                                                       QStringLiteral("sine"), QStringLiteral("440")}),
              0);
    QProcess child;
    child.start(QStringLiteral(RECORDING_CHILD), {documents.path(), wav});
    ASSERT_TRUE(child.waitForStarted());
    QByteArray said;
    while (!said.contains("recording\n") && child.waitForReadyRead(10'000))
        said += child.readAllStandardOutput();
    ASSERT_TRUE(said.contains("recording\n")) << child.readAllStandardError().toStdString();
    ASSERT_EQ(::kill(pid_t(child.processId()), SIGKILL), 0);
    ASSERT_TRUE(child.waitForFinished());
    EXPECT_EQ(child.exitStatus(), QProcess::CrashExit);

    SessionStore::useDocumentsFolder(documents.path());
    const SessionStore::Listing classes = SessionStore::list();
    SessionStore::useDocumentsFolder({});
    ASSERT_EQ(classes.size(), 1);
    const auto &[folder, data] = classes.first();
    EXPECT_EQ(data.title, QStringLiteral("Killed mid-class"));
    EXPECT_GE(data.lines.size(), 20);
    EXPECT_EQ(data.lines[19].translation, QStringLiteral("第 19 行"));

    const auto audio = AudioFile::decode(folder + QStringLiteral("/录音.m4a"));
    ASSERT_TRUE(audio);
    EXPECT_EQ(audio->codec, QStringLiteral("aac"));
    EXPECT_EQ(audio->channels, 1);
    EXPECT_EQ(audio->sampleRate, 48'000);
    EXPECT_GE(audio->seconds, 3.0);
    EXPECT_LE(audio->seconds, 10.0);
}
