#include "captions/Captions.h"

#include "account/Relay.h"
#include "captions/CloudSource.h"
#include "captions/MicSource.h"
#include "captions/WindowSource.h"
#include "platform/PocketSphinxRecognizer.h"
#include "settings/Config.h"

std::unique_ptr<CaptionSource> makeSource(const Config &config, MicHub &hub)
{
    if (config.sourceType == u"window")
        return std::make_unique<WindowSource>(config.app, QStringList{config.lecture().locale, config.answer().locale},
                                              WindowSource::x11());
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
