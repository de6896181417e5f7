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
    microphone.sampleRate = 44'100;
    microphone.channels = 2;
    AudioRecorder recorder(microphone.microphone());
    EXPECT_EQ(recorder.bitRate(), 64'000);
    recorder.setBitRate(32'000);
    ASSERT_EQ(recorder.start(path), std::nullopt);
    EXPECT_EQ(microphone.listeners(), 1);
    microphone.play(tone(44'100, 12.0, 2));
    recorder.stop();
    EXPECT_EQ(microphone.listeners(), 0);

    const auto decoded = AudioFile::decode(path);
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->codec, QStringLiteral("aac"));
    EXPECT_EQ(decoded->channels, 1);
    EXPECT_EQ(decoded->sampleRate, 44'100);
    EXPECT_NEAR(decoded->seconds, 12.0, 12.0 * 0.05);
    EXPECT_NEAR(double(QFile(path).size()), 32'000 / 8 * 12.0, 32'000 / 8 * 12.0 * 0.2);

    // After stop, sound goes nowhere and the file stays complete.
    microphone.play(tone(44'100, 3.0, 2));
    recorder.append(tone(44'100, 1.0).data(), 44'100, 44'100, 1);
    EXPECT_NEAR(AudioFile::decode(path)->seconds, 12.0, 12.0 * 0.05);
}

TEST(AudioRecorder, DropsBuffersOfAnotherRateAndTakesDirectFeeds)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("录音.m4a"));
    FakeMicrophone microphone;
    AudioRecorder recorder(microphone.microphone());
    ASSERT_EQ(recorder.start(path), std::nullopt);
    const std::vector<float> second = tone(48'000, 1.0);
    for (int i = 0; i < 5; ++i)
        recorder.append(second.data(), 48'000, 48'000, 1);
    recorder.append(second.data(), 24'000, 24'000, 1);   // another rate
    recorder.append(second.data(), 0, 48'000, 1);
    recorder.append(second.data(), 100, 48'000, 0);
    recorder.stop();
    EXPECT_NEAR(AudioFile::decode(path)->seconds, 5.0, 5.0 * 0.05);

    // A second recording into another file.
    const QString next = folder.filePath(QStringLiteral("next.m4a"));
    ASSERT_EQ(recorder.start(next), std::nullopt);
    recorder.append(second.data(), 48'000, 48'000, 1);
    recorder.stop();
    recorder.stop();
    EXPECT_NEAR(AudioFile::decode(next)->seconds, 1.0, 0.05);
}

TEST(AudioRecorder, WordsTheProblemsOfStarting)
{
    QTemporaryDir folder;
    FakeMicrophone microphone;
    AudioRecorder recorder(microphone.microphone());
    microphone.sampleRate = 0;
    EXPECT_EQ(recorder.start(folder.filePath(QStringLiteral("a.m4a"))), QStringLiteral("找不到麦克风"));
    microphone.sampleRate = 48'000;
    EXPECT_EQ(recorder.start(folder.filePath(QStringLiteral("missing/a.m4a"))), QStringLiteral("无法创建录音文件"));
    microphone.failure = "Connection refused";
    EXPECT_EQ(recorder.start(folder.filePath(QStringLiteral("b.m4a"))), QStringLiteral("录音启动失败：Connection refused"));
    EXPECT_EQ(microphone.listeners(), 0);
    EXPECT_TRUE(AudioFile::decode(folder.filePath(QStringLiteral("b.m4a")))) << "closed, not left half-made";
}

TEST(AudioRecorder, AClassKilledMidwayLeavesPlayableAudioAndAValidRecord)
{
    QTemporaryDir documents;
    QProcess child;
    child.start(QStringLiteral(RECORDING_CHILD), {documents.path()});
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
