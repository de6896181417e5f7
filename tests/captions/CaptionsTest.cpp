#include "captions/Captions.h"

#include "app/Config.h"
#include "captions/MicHub.h"

#include "FakeAudioInput.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

TEST(CaptionsTest, MakeSourceFollowsTheSourceTypeThenTheRecognizer)
{
    MicHub hub(std::make_unique<FakeAudioInput>());
    Config config;

    config.sourceType = QStringLiteral("window");
    config.recognizer = QStringLiteral("cloud");
    const auto window = makeSource(config, hub);
    EXPECT_EQ(window->start(), u"这个版本还不能读取其他应用的字幕窗口，请在设置里改用麦克风");
    EXPECT_EQ(window->read(), QString());
    EXPECT_FALSE(hub.running());

    // Sound sources recognise the lecture language first; it must be recognisable.
    config.sourceType = QStringLiteral("mic");
    config.lectureLanguage = QStringLiteral("Korean");
    config.extraLanguages = QStringList{QStringLiteral("English")};
    for (const std::optional<QString> &recognizer : {std::optional<QString>(), std::optional(QStringLiteral("local"))}) {
        config.recognizer = recognizer;
        EXPECT_EQ(makeSource(config, hub)->start(), u"本机语音识别不支持这门课的语言（ko-KR）");
    }

    // Extra languages follow, and one without a model is skipped.
    config.lectureLanguage = QStringLiteral("English");
    config.extraLanguages = QStringList{QStringLiteral("Japanese"), QStringLiteral("French")};
    config.recognizer.reset();
    const auto mic = makeSource(config, hub);
    EXPECT_EQ(mic->start(), std::nullopt);
    EXPECT_TRUE(hub.running());
    EXPECT_EQ(mic->draft(), QString());
    mic->stop();
    EXPECT_FALSE(hub.running());
}

} // namespace
