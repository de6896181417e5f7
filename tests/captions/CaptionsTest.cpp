#include "captions/Captions.h"

#include "platform/MicHub.h"
#include "settings/Config.h"

#include "FakeAudioInput.h"
#include "QtPrinters.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(CaptionsTest, MakeSourceFollowsTheSourceTypeThenTheRecognizer)
{
    MicHub hub(std::make_unique<FakeAudioInput>());
    Config config;
    config.sourceType = u"window"_s;
    config.recognizer = u"cloud"_s;
    EXPECT_EQ(makeSource(config, hub)->start(), u"这个版本还不能读取其他应用的字幕窗口，请在设置里改用麦克风");

    // The microphone source, also by default, recognises the lecture language first.
    config.sourceType = u"mic"_s;
    config.lectureLanguage = u"Korean"_s;
    config.extraLanguages = QStringList{u"English"_s};
    for (const std::optional<QString> &recognizer : {std::optional<QString>(), std::optional(u"local"_s)}) {
        config.recognizer = recognizer;
        EXPECT_EQ(makeSource(config, hub)->start(), u"本机语音识别不支持这门课的语言（ko-KR）");
    }
}

} // namespace
