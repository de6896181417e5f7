#pragma once

// What the coordinator builds its live objects with. main.cpp hands in the real makers; tests a
// scripted caption source, a fake model and a manual clock, so that a whole class runs in
// milliseconds.

#include "ai/AIProvider.h"
#include "captions/CaptionSource.h"
#include "platform/FileRecognizer.h"
#include "settings/Config.h"
#include "text/Clock.h"
#include "text/Schedule.h"

#include <functional>
#include <memory>

class MicHub;

struct AppServices
{
    using SourceMaker = std::function<std::unique_ptr<CaptionSource>(const Config &config)>;
    // May throw AIError for a missing key, as the provider factories do.
    using ProviderMaker = std::function<std::shared_ptr<const AIProvider>(const Config &config)>;

    MicHub &hub;
    std::shared_ptr<Text::Clock> clock;
    Text::Schedule schedule;
    SourceMaker makeSource;
    ProviderMaker makeProvider;
    ProviderMaker makeFastProvider;
    FileRecognizer::Factory recognizers;
};
