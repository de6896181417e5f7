#include "captions/Captions.h"
#include "captions/WindowSource.h"

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
    // The window source reads the application in lower case, in the lecture and answer languages.
    config.sourceType = u"window"_s;
    config.recognizer = u"cloud"_s;
    config.app = u"LiveCaptions"_s;
    config.answerLanguage = config.lectureLanguage;
    const auto source = makeSource(config, hub);
    const auto *window = dynamic_cast<const WindowSource *>(source.get());
    ASSERT_TRUE(window);
    EXPECT_EQ(window->app(), u"livecaptions"_s);
    EXPECT_EQ(window->languages(), QStringList{config.lecture().locale});

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
