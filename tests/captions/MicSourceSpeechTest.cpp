#include "captions/MicSource.h"
#include "platform/MicHub.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/QtAudioInput.h"
#include "platform/WavFileInput.h"

#include "AudioFiles.h"
#include "QtPrinters.h"
#include "SpeechAudio.h"
#include "TimeScale.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

#include <malloc.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// What the engine would see polling a US English source: the final lines, the polls at which
// drafts and lines first showed up, and the bytes the heap grew by after start().
struct Heard
{
    QStringList lines;
    int firstDraft = -1;
    int firstLine = -1;
    qint64 heapGrowth = 0;
};

qint64 heapInUse()
{
    const struct mallinfo2 heap = mallinfo2();
    return qint64(heap.uordblks + heap.hblkhd);
}

// Polls the source on the input every 5 ms until `lines` lines came (none: a draft) or 60 s passed,
// then stops it.
Heard listen(std::unique_ptr<AudioInput> input, qsizetype lines, const std::function<void()> &started = [] {})
{
    Heard heard;
    MicHub hub(std::move(input));
    MicSource mic({u"en-US"_s}, hub, PocketSphinxRecognizer::factory());
    if (const auto problem = mic.start()) {
        ADD_FAILURE() << *problem;
        return heard;
    }
    started();
    const qint64 inUse = heapInUse();
    QElapsedTimer timer;
    timer.start();
    const auto enough = [&] { return lines > 0 ? heard.lines.size() >= lines : heard.firstDraft >= 0; };
    for (int poll = 0; !enough() && timer.elapsed() < 60'000; ++poll) {
        if (!mic.draft().isEmpty() && heard.firstDraft < 0)
            heard.firstDraft = poll;
        const QStringList finals = mic.takeFinals();
        if (!finals.isEmpty() && heard.firstLine < 0)
            heard.firstLine = poll;
        heard.lines << finals;
        std::this_thread::sleep_for(5ms);
    }
    heard.heapGrowth = heapInUse() - inUse;
    timer.restart();
    mic.stop();
    EXPECT_LT(timer.elapsed(), 500 * timeScale) << "stop waits for at most one step of recognition";
    EXPECT_FALSE(hub.running());
    return heard;
}

std::unique_ptr<AudioInput> file(const QString &path, WavFileInput::Pace pace)
{
    static Text::SystemClock clock;
    return std::make_unique<WavFileInput>(path, pace, clock);
}

TEST(MicSourceSpeechTest, SpokenSentencesFromAMicrophoneOfAnotherFormatShowAsDraftsAndBecomeLines)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    const QString stereo = soxFile(folder.path(), u"stereo.wav"_s, {speech->path},
                                   {u"-r44100"_s, u"-c2"_s, u"-efloating-point"_s, u"-b32"_s});
    ASSERT_FALSE(stereo.isEmpty());
    const Heard heard = listen(file(stereo, WavFileInput::Pace::AsFastAsPossible), 3);
    ASSERT_EQ(heard.lines.size(), 3) << heard.lines.join(u" | ");
    EXPECT_GE(heard.firstDraft, 0);
    EXPECT_LT(heard.firstDraft, heard.firstLine) << "words show as a draft before the line is final";
    EXPECT_TRUE(heard.lines[0].contains(u"read chapter seven before the exam")) << heard.lines[0];
    EXPECT_TRUE(heard.lines[1].contains(u"chemical energy")) << heard.lines[1];
    EXPECT_TRUE(heard.lines[2].contains(u"chapters three to five")) << heard.lines[2];

    // Stopped while a sentence is being said, the source stops promptly all the same.
    EXPECT_GE(listen(file(speech->path, WavFileInput::Pace::RealTime), 0).firstDraft, 0);
}

TEST(MicSourceSpeechTest, MinutesOfRoomNoiseMakeNoLines)
{
    QTemporaryDir folder;
    SpeechAudio::Script script{{SpeechAudio::lecture()[1]}};
    script.leadSeconds = 180;
    script.noise = 0.001;
    const auto speech = SpeechAudio::make(folder.path(), script);
    ASSERT_TRUE(speech);
    const Heard heard = listen(file(speech->path, WavFileInput::Pace::AsFastAsPossible), 1);
    ASSERT_EQ(heard.lines.size(), 1) << "three minutes of noise, one sentence";
    EXPECT_TRUE(heard.lines[0].contains(u"chemical energy")) << heard.lines[0];
    // Sound waiting for the recogniser, or noise taken for one endless utterance, would be megabytes.
    EXPECT_LT(heard.heapGrowth, 2 << 20) << "the noise left nothing behind";
}

// The default input device is a PulseAudio server of the test's own whose only source plays what
// is written into its FIFO: 16 kHz mono 16-bit sound, as the speech is made.
TEST(MicSourceSpeechTest, TheDefaultInputDeviceIsRecognisedThroughQtMultimedia)
{
    static bool ran = false;
    if (std::exchange(ran, true))
        GTEST_SKIP() << "Qt Multimedia stays with the first sound server the program met, gone by now";
    QTemporaryDir folder;
    const QString socket = folder.filePath(u"native"_s);
    const QString fifo = folder.filePath(u"microphone"_s);
    QProcess server;
    server.setProcessChannelMode(QProcess::MergedChannels);
    // The server also ends by itself soon after its last client, should the test die.
    server.start(u"pulseaudio"_s,
                 {u"-n"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--exit-idle-time=20"_s, u"--disable-shm=yes"_s,
                  u"--load=module-native-protocol-unix auth-anonymous=1 socket="_s + socket,
                  u"--load=module-pipe-source source_name=lecture format=s16le rate=16000 channels=1 file="_s + fifo});
    const auto cleanUp = qScopeGuard([&] {
        qunsetenv("PULSE_SERVER");
        server.kill();
        server.waitForFinished();
    });
    if (!server.waitForStarted(5'000))
        GTEST_SKIP() << "pulseaudio won't start: " << server.errorString();
    QElapsedTimer waited;
    waited.start();
    while (!QFile::exists(socket) || !QFile::exists(fifo)) {
        if (server.state() == QProcess::NotRunning || waited.elapsed() > 5'000)
            GTEST_SKIP() << "pulseaudio won't run headless: " << QString::fromLocal8Bit(server.readAll());
        std::this_thread::sleep_for(20ms);
    }
    qputenv("PULSE_SERVER", "unix:" + QFile::encodeName(socket));
    const auto speech = SpeechAudio::make(folder.path(), {{SpeechAudio::lecture()[1]}});
    ASSERT_TRUE(speech);
    EXPECT_EQ(QtAudioInput().format(), (AudioFormat{16'000, 1}));

    std::jthread speaker;   // writes the sound into the FIFO as fast as the server takes it
    const Heard heard = listen(std::make_unique<QtAudioInput>(), 1, [&] {
        speaker = std::jthread([&] { soxFile(folder.path(), u"microphone"_s, {speech->path}, {u"-traw"_s}); });
    });
    ASSERT_EQ(heard.lines.size(), 1) << "the sentence came through the sound server and Qt Multimedia";
    EXPECT_TRUE(heard.lines[0].contains(u"chemical energy")) << heard.lines[0];
}

} // namespace
