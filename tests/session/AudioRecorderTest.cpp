#include "session/AudioRecorder.h"

#include "AudioFiles.h"
#include "EventLoop.h"
#include "SessionFixture.h"

#include <QFile>

#include <csignal>

using namespace Qt::StringLiterals;
using AudioRecorderTest = SessionFixture;

namespace {

// An input whose device is there but won't open.
class BusyInput final : public AudioInput
{
public:
    AudioFormat format() override { return {48'000, 1}; }
    std::optional<QString> start(Receiver) override { return u"设备正被其他程序占用"_s; }
    void stop() override {}
};

} // namespace

// The recorder is the only user of the AAC writer: four rates, two bit rates and buffers that split
// the encoder's frames cover the files the writer makes.
TEST_F(AudioRecorderTest, RecordsMonoAacAtTheInputRateIntoANewFileEachTime)
{
    const auto expectBitRate = [](const QString &path, int bitRate, double seconds) {
        EXPECT_NEAR(double(QFile(path).size()), bitRate / 8 * seconds, bitRate / 8 * seconds * 0.2) << bitRate;
    };
    const QString first = documents_.filePath(u"录音.m4a"_s);
    const QString next = documents_.filePath(u"next.m4a"_s);
    input_->delivered = {44'100, 2};
    AudioRecorder recorder(hub_);
    recorder.setBitRate(32'000);
    ASSERT_EQ(recorder.start(first), std::nullopt);
    input_->play(tone(44'100, 12.0, 2), 4'096);
    // The input changes under the running recording: that sound can't join this file.
    input_->delivered = {24'000, 1};
    input_->play(tone(24'000, 2.0), 2'400);
    recorder.stop();
    EXPECT_TRUE(isMonoAac(first, 44'100, 12.0));
    expectBitRate(first, 32'000, 12.0);

    recorder.setBitRate(64'000);
    ASSERT_EQ(recorder.start(next), std::nullopt);
    input_->play(tone(24'000, 7.3), 2'400);
    recorder.stop();
    recorder.stop();
    EXPECT_TRUE(isMonoAac(next, 24'000, 7.3));
    expectBitRate(next, 64'000, 7.3);
    EXPECT_EQ(input_->counts().stops, 2);
}

TEST_F(AudioRecorderTest, WordsTheProblemsOfStarting)
{
    AudioRecorder recorder(hub_);
    input_->failure = u"没有输入设备"_s;
    EXPECT_EQ(recorder.start(documents_.filePath(u"a.m4a"_s)), u"找不到麦克风"_s);
    input_->failure.reset();
    EXPECT_EQ(recorder.start(documents_.filePath(u"missing/a.m4a"_s)), u"无法创建录音文件"_s);
    input_->delivered = {5'000, 1};   // a rate the encoder doesn't take
    EXPECT_EQ(recorder.start(documents_.filePath(u"a.m4a"_s)), u"无法创建录音文件"_s);
    EXPECT_EQ(input_->counts().starts, 0);

    MicHub busy(std::make_unique<BusyInput>());
    AudioRecorder refused(busy);
    const QString path = documents_.filePath(u"b.m4a"_s);
    EXPECT_EQ(refused.start(path), u"录音启动失败：设备正被其他程序占用"_s);
    EXPECT_FALSE(busy.running());
    EXPECT_TRUE(isMonoAac(path, 48'000, 0, 0.1)) << "closed, not left half-made";
}

TEST_F(AudioRecorderTest, AClassKilledMidwayLeavesPlayableAudioAndAValidRecord)
{
    const QString wav = soxFile(documents_.path(), u"class.wav"_s, {u"-n"_s}, {u"-r48000"_s, u"-c2"_s},
                                {u"synth"_s, u"5"_s, u"sine"_s, u"440"_s});
    ASSERT_FALSE(wav.isEmpty());
    QProcess child;
    child.start(QStringLiteral(RECORDING_CHILD), {documents_.path(), wav});
    QByteArray said;
    while (!said.contains("recording\n") && child.waitForReadyRead(10'000))
        said += child.readAllStandardOutput();
    ASSERT_TRUE(said.contains("recording\n")) << child.readAllStandardError().toStdString();
    ASSERT_EQ(::kill(pid_t(child.processId()), SIGKILL), 0);
    ASSERT_TRUE(child.waitForFinished());
    EXPECT_EQ(child.exitStatus(), QProcess::CrashExit);

    const SessionStore::Listing classes = SessionStore::list();
    ASSERT_EQ(classes.size(), 1);
    const auto &[folder, data] = classes.first();
    EXPECT_EQ(data.title, u"Killed mid-class"_s);
    ASSERT_GE(data.lines.size(), 20);
    EXPECT_EQ(data.lines[19].translation, u"第 19 行"_s);
    // The child speaks once about three seconds are on disk; a loaded machine may kill it there.
    EXPECT_TRUE(isMonoAac(folder + u"/录音.m4a", 48'000, 5.0, 2.5));   // 2.5 to 7.5 seconds
}

TEST_F(AudioRecorderTest, AFullDiskKeepsTheSoundWaitingAndWritesItWhenSpaceReturns)
{
    const QString path = documents_.filePath(u"录音.m4a"_s);
    input_->delivered = {16'000, 1};
    AudioRecorder recorder(hub_);
    ASSERT_EQ(recorder.start(path), std::nullopt);
    input_->play(tone(16'000, 3.0), 1'600);
    ASSERT_TRUE(runEventsUntil([&] { return QFile(path).size() > 8'000; }));

    // The disk takes nothing more (as a full one would) while three more seconds are heard.
    {
        const FullDisk full(QFile(path).size());
        input_->play(tone(16'000, 3.0), 1'600);
        ASSERT_TRUE(runEventsUntil([&] { return recorder.problem().has_value(); }));
    }
    EXPECT_EQ(recorder.problem(), u"磁盘空间不足：录音先存在内存里，腾出空间后会自动写入"_s);

    input_->play(tone(16'000, 1.0), 1'600);
    EXPECT_TRUE(runEventsUntil([&] { return !recorder.problem(); })) << "space came back: all is well again";
    recorder.stop();
    EXPECT_EQ(recorder.problem(), std::nullopt);
    EXPECT_TRUE(isMonoAac(path, 16'000, 7.0)) << "nothing heard was lost";
}
