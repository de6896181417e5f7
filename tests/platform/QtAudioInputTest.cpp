#include "platform/QtAudioInput.h"

#include <gtest/gtest.h>

namespace {

TEST(QtAudioInputTest, WithoutASoundServerThereIsNoInput)
{
    if (qEnvironmentVariableIsSet("PULSE_SERVER"))
        GTEST_SKIP() << "a sound server is configured";
    QtAudioInput input;
    EXPECT_FALSE(input.format().isValid());
    int buffers = 0;
    EXPECT_EQ(input.start([&](const AudioBuffer &) { ++buffers; }), u"找不到音频输入设备");
    input.stop();
    EXPECT_EQ(buffers, 0);
}

} // namespace
