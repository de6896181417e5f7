#include "captions/MicHub.h"

#include "FakeAudioInput.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

struct Heard
{
    std::mutex mutex;
    std::vector<const float *> buffers;
    std::vector<AudioFormat> formats;

    MicHub::Listener listener()
    {
        return [this](const AudioBuffer &buffer) {
            std::scoped_lock lock(mutex);
            buffers.push_back(buffer.samples);
            formats.push_back(buffer.format);
        };
    }
    size_t count()
    {
        std::scoped_lock lock(mutex);
        return buffers.size();
    }
};

class MicHubTest : public ::testing::Test
{
protected:
    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    const std::vector<float> sound = std::vector<float>(2 * 4'096 * 3, 0.25f);
};

TEST_F(MicHubTest, FirstListenerStartsTheInputAndTheLastStopsIt)
{
    Heard first, second;
    EXPECT_EQ(hub.format(), (AudioFormat{48'000, 2}));
    const QUuid a = hub.add(first.listener());
    const QUuid b = hub.add(second.listener());
    EXPECT_NE(a, b);
    EXPECT_EQ(input->counts().starts, 1) << "a second listener joins the running input";
    EXPECT_TRUE(hub.running());

    input->play(sound, 4'096);
    ASSERT_EQ(first.count(), 3u);
    EXPECT_EQ(first.buffers, second.buffers) << "every listener hears the same buffers";
    EXPECT_EQ(first.formats.front(), (AudioFormat{48'000, 2}));

    hub.remove(a);
    EXPECT_EQ(input->counts().stops, 0);
    EXPECT_TRUE(hub.running());
    input->play(sound, 4'096);
    EXPECT_EQ(first.count(), 3u);
    EXPECT_EQ(second.count(), 6u);

    hub.remove(QUuid::createUuid());
    hub.remove(a);
    EXPECT_EQ(input->counts().stops, 0) << "unknown ids change nothing";

    hub.remove(b);
    EXPECT_EQ(input->counts().stops, 1);
    EXPECT_FALSE(hub.running());
    EXPECT_FALSE(input->counts().running);

    hub.add(first.listener());
    EXPECT_EQ(input->counts().starts, 2) << "after the last is gone, the next one starts afresh";
}

TEST_F(MicHubTest, FailedStartPutsEverythingBackAndTheNextAddTriesAgain)
{
    input->failure = QStringLiteral("找不到音频输入设备");
    Heard heard;
    try {
        hub.add(heard.listener());
        FAIL() << "add should throw";
    } catch (const MicHub::Error &error) {
        EXPECT_EQ(error.message(), u"找不到音频输入设备");
        EXPECT_STREQ(error.what(), "找不到音频输入设备");
    }
    EXPECT_FALSE(hub.running());
    EXPECT_FALSE(hub.format().isValid());

    input->failure.reset();
    const QUuid id = hub.add(heard.listener());
    EXPECT_EQ(input->counts().starts, 2);
    input->play(sound, 4'096);
    EXPECT_EQ(heard.count(), 3u) << "the failed listener left nothing behind";
    hub.remove(id);
    EXPECT_EQ(input->counts().stops, 1);
}

TEST_F(MicHubTest, ListenerMayRemoveItselfWhileBeingCalled)
{
    Heard other;
    QUuid self;
    int calls = 0;
    self = hub.add([&](const AudioBuffer &) {
        ++calls;
        hub.remove(self);
    });
    const QUuid otherId = hub.add(other.listener());
    input->play(sound, 4'096);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(other.count(), 3u);
    EXPECT_TRUE(hub.running());

    hub.remove(otherId);
    self = hub.add([&](const AudioBuffer &) {
        ++calls;
        hub.remove(self);
    });
    input->play(sound, 4'096);
    EXPECT_EQ(calls, 2);
    EXPECT_FALSE(hub.running()) << "the last listener removing itself stops the input";
}

TEST_F(MicHubTest, ConcurrentFirstListenersStartTheInputOnce)
{
    for (int round = 0; round < 50; ++round) {
        std::atomic<int> ready = 0;
        QUuid ids[2];
        std::jthread adders[2];
        for (int i = 0; i < 2; ++i) {
            adders[i] = std::jthread([&, i] {
                ++ready;
                while (ready < 2) {
                }
                ids[i] = hub.add([](const AudioBuffer &) {});
            });
        }
        for (auto &adder : adders)
            adder.join();
        EXPECT_EQ(input->counts().starts, round + 1);
        hub.remove(ids[0]);
        hub.remove(ids[1]);
        EXPECT_EQ(input->counts().stops, round + 1);
    }
}

} // namespace
