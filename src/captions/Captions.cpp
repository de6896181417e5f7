#include "captions/Captions.h"

#include "account/Relay.h"
#include "captions/CloudSource.h"
#include "captions/MicSource.h"
#include "captions/UnavailableSource.h"
#include "platform/PocketSphinxRecognizer.h"
#include "settings/Config.h"

std::unique_ptr<CaptionSource> makeSource(const Config &config, MicHub &hub)
{
    if (config.sourceType == u"window")
        return std::make_unique<UnavailableSource>(QStringLiteral("这个版本还不能读取其他应用的字幕窗口，请在设置里改用麦克风"));
    QStringList locales{config.lecture().locale};
    for (const Language &extra : config.extras())
        locales << extra.locale;
    if (config.recognizer == u"cloud")
        return std::make_unique<CloudSource>(
            CloudSource::Settings{config.cloudModel.value_or(QStringLiteral("gpt-4o-mini-transcribe")), locales,
                                  config.usesQuilletAI(Relay::available())},
            hub, PocketSphinxRecognizer::factory());
    return std::make_unique<MicSource>(locales, hub, PocketSphinxRecognizer::factory());
}
