#include "captions/Captions.h"

#include "app/Config.h"
#include "captions/MicSource.h"
#include "captions/UnavailableSource.h"
#include "platform/PocketSphinxRecognizer.h"

std::unique_ptr<CaptionSource> makeSource(const Config &config, MicHub &hub)
{
    if (config.sourceType == u"window")
        return std::make_unique<UnavailableSource>(QStringLiteral("这个版本还不能读取其他应用的字幕窗口，请在设置里改用麦克风"));
    QStringList locales{config.lecture().locale};
    for (const Language &extra : config.extras())
        locales << extra.locale;
    // Cloud recognition is not in this build yet: the device's own recogniser keeps the class captioned.
    return std::make_unique<MicSource>(locales, hub, PocketSphinxRecognizer::factory());
}
