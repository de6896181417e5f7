#include "platform/MicHub.h"

#include "AudioFiles.h"
#include "FakeAudioInput.h"
#include "platform/WavFileInput.h"
#include "text/Clock.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <atomic>
#include <latch>
#include <thread>

namespace {

// The samples each buffer heard pointed to. play() returns after its audio thread has ended, so
// the test reads them without a lock.
using Heard = std::vector<const float *>;

MicHub::Listener into(Heard &heard)
{
    return [&heard](const AudioBuffer &buffer) {
        EXPECT_EQ(buffer.format, (AudioFormat{48'000, 2}));
        heard.push_back(buffer.samples);
    };
}

class MicHubTest : public ::testing::Test
{
protected:
    void playThreeBuffers() { input->play(std::vector<float>(2 * 4'096 * 3, 0.25f), 4'096); }

    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
};

TEST_F(MicHubTest, FirstListenerStartsTheInputAndTheLastStopsIt)
{
    input->failure = QStringLiteral("找不到音频输入设备");
    Heard first, second;
    try {
        hub.add(into(first));
        ADD_FAILURE() << "add should throw without an input device";
    } catch (const MicHub::Error &error) {
        EXPECT_EQ(error.message(), u"找不到音频输入设备");
    }
    EXPECT_FALSE(hub.running());

    input->failure.reset();
    const QUuid a = hub.add(into(first));
    const QUuid b = hub.add(into(second));
    EXPECT_NE(a, b);
    EXPECT_EQ(input->counts().starts, 2) << "the next add tried again, a second listener joined it";
    EXPECT_TRUE(hub.running());
    playThreeBuffers();
    ASSERT_EQ(first.size(), 3u) << "the failed listener left nothing behind";
    EXPECT_EQ(first, second) << "every listener hears the same buffers";

    hub.remove(a);
    hub.remove(a);
    hub.remove(QUuid::createUuid());
    EXPECT_EQ(input->counts().stops, 0) << "one listener is left; unknown ids change nothing";
    QUuid self;
    const auto once = [&](const AudioBuffer &) {
        hub.remove(self);
        first.push_back(nullptr);
    };
    self = hub.add(once);
    playThreeBuffers();
    EXPECT_EQ(first.size(), 4u) << "a listener may remove itself while being called";
    EXPECT_EQ(second.size(), 6u);

    hub.remove(b);
    EXPECT_EQ(input->counts().stops, 1);
    EXPECT_FALSE(hub.running());
    EXPECT_FALSE(input->counts().running);
    self = hub.add(once);
    playThreeBuffers();
    EXPECT_EQ(first.size(), 5u);
    EXPECT_FALSE(hub.running()) << "the last listener removing itself stops the input";
}

TEST_F(MicHubTest, ConcurrentFirstListenersStartTheInputOnce)
{
    for (int round = 1; round <= 50; ++round) {
        std::latch together(2);
        QUuid ids[2];
        const auto add = [&](int i) {
            together.arrive_and_wait();
            ids[i] = hub.add([](const AudioBuffer &) {});
        };
        {
            std::jthread first(add, 0), second(add, 1);
        }
        EXPECT_EQ(input->counts().starts, round);
        hub.remove(ids[0]);
        hub.remove(ids[1]);
        EXPECT_EQ(input->counts().stops, round);
    }
}

TEST(MicHubTeardownTest, DestroyedWhileAudioFlowsJoinsTheAudioThreadFirst)
{
    QTemporaryDir folder;
    const QString wav = soxFile(folder.path(), QStringLiteral("tone.wav"), {QStringLiteral("-n")},
                                {QStringLiteral("-r"), QStringLiteral("48000"), QStringLiteral("-c"), QStringLiteral("2")},
                                {QStringLiteral("synth"), QStringLiteral("30"), QStringLiteral("sine"), QStringLiteral("440")});
    ASSERT_FALSE(wav.isEmpty());
    Text::SystemClock clock;
    for (int round = 0; round < 20; ++round) {
        std::atomic<int> buffers = 0;
        auto hub = std::make_unique<MicHub>(
            std::make_unique<WavFileInput>(wav, WavFileInput::Pace::AsFastAsPossible, clock));
        hub->add([&buffers](const AudioBuffer &) { ++buffers; });
        while (buffers < 3)
            std::this_thread::yield();
        hub.reset();
        const int afterwards = buffers;
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        EXPECT_EQ(buffers, afterwards) << "no buffer reaches a listener of a destroyed hub";
    }
}

} // namespace
