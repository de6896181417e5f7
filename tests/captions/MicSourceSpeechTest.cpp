#include "captions/MicHub.h"
#include "captions/MicSource.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/WavFileInput.h"

#include "AudioFiles.h"
#include "QtPrinters.h"
#include "SpeechAudio.h"
#include "TimeScale.h"

#include <QElapsedTimer>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

#include <malloc.h>

using namespace std::chrono_literals;

namespace {

// What the engine would see polling the source: every final line, and when drafts and lines
// first showed up (in polls).
struct Heard
{
    QStringList lines;
    int firstDraft = -1;
    int firstLine = -1;
    qint64 heapGrowth = 0;   // bytes in use at the end beyond those after start()
};

// Plays the file through the hub into a source for US English, polling every 5 ms until
// `lines` lines came or 60 s passed.
Heard listen(const QString &path, qsizetype lines)
{
    Text::SystemClock clock;
    MicHub hub(std::make_unique<WavFileInput>(path, WavFileInput::Pace::AsFastAsPossible, clock));
    MicSource mic({QStringLiteral("en-US")}, hub, PocketSphinxRecognizer::factory());
    Heard heard;
    const auto problem = mic.start();
    EXPECT_EQ(problem, std::nullopt);
    if (problem)
        return heard;
    const auto inUse = [] {
        const struct mallinfo2 heap = mallinfo2();
        return qint64(heap.uordblks + heap.hblkhd);
    };
    const qint64 started = inUse();
    QElapsedTimer timer;
    timer.start();
    for (int poll = 0; heard.lines.size() < lines && timer.elapsed() < 60'000; ++poll) {
        if (!mic.draft().isEmpty() && heard.firstDraft < 0)
            heard.firstDraft = poll;
        const QString read = mic.read();
        if (!read.isEmpty() && heard.firstLine < 0)
            heard.firstLine = poll;
        heard.lines << read.split(u'\n', Qt::SkipEmptyParts);
        std::this_thread::sleep_for(5ms);
    }
    heard.heapGrowth = inUse() - started;
    mic.stop();
    EXPECT_FALSE(hub.running());
    return heard;
}

TEST(MicSourceSpeechTest, SpokenSentencesFromAMicrophoneOfAnotherFormatShowAsDraftsAndBecomeLines)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    const QString stereo = soxFile(folder.path(), QStringLiteral("stereo.wav"), {speech->path},
                                   {QStringLiteral("-r44100"), QStringLiteral("-c2"), QStringLiteral("-efloating-point"),
                                    QStringLiteral("-b32")});
    ASSERT_FALSE(stereo.isEmpty());
    const Heard heard = listen(stereo, 3);
    ASSERT_EQ(heard.lines.size(), 3) << heard.lines.join(u" | ").toStdString();
    EXPECT_GE(heard.firstDraft, 0);
    EXPECT_LT(heard.firstDraft, heard.firstLine) << "words show as a draft before the line is final";
    EXPECT_TRUE(heard.lines[0].contains(u"read chapter seven before the exam")) << heard.lines[0].toStdString();
    EXPECT_TRUE(heard.lines[1].contains(u"chemical energy")) << heard.lines[1].toStdString();
    EXPECT_TRUE(heard.lines[2].contains(u"chapters three to five")) << heard.lines[2].toStdString();
}

TEST(MicSourceSpeechTest, MinutesOfRoomNoiseMakeNoLines)
{
    QTemporaryDir folder;
    SpeechAudio::Script script{{SpeechAudio::lecture()[1]}};
    script.leadSeconds = 180;
    script.noise = 0.001;
    const auto speech = SpeechAudio::make(folder.path(), script);
    ASSERT_TRUE(speech);
    const Heard heard = listen(speech->path, 1);
    ASSERT_EQ(heard.lines.size(), 1) << "three minutes of noise, one sentence";
    EXPECT_TRUE(heard.lines[0].contains(u"chemical energy")) << heard.lines[0].toStdString();
    // Sound waiting for the recogniser, or noise taken for one endless utterance, would be megabytes.
    EXPECT_LT(heard.heapGrowth, 2 << 20) << "the noise left nothing behind";
}

TEST(MicSourceSpeechTest, StopDuringRecognitionReturnsPromptly)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    Text::SystemClock clock;
    MicHub hub(std::make_unique<WavFileInput>(speech->path, WavFileInput::Pace::RealTime, clock));
    MicSource mic({QStringLiteral("en-US")}, hub, PocketSphinxRecognizer::factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    QElapsedTimer timer;
    timer.start();
    while (mic.draft().isEmpty() && timer.elapsed() < 10'000)
        std::this_thread::sleep_for(5ms);
    ASSERT_FALSE(mic.draft().isEmpty());
    timer.restart();
    mic.stop();
    EXPECT_LT(timer.elapsed(), 500 * timeScale) << "stop waits for at most one step of recognition";
    EXPECT_FALSE(hub.running());
}

} // namespace
