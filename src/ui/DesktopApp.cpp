#include "ui/DesktopApp.h"

#include "ai/ProviderFactory.h"
#include "captions/Captions.h"
#include "platform/AudioInput.h"
#include "platform/PocketSphinxFileRecognizer.h"
#include "ui/panel/MainMenu.h"
#include "ui/web/FeedView.h"
#include "ui/web/TranscriptView.h"

#include <QCoreApplication>
#include <QMenuBar>

DesktopApp::DesktopApp()
    : hub_(AudioInput::create())
    , settings_(&panel_)
    , desktop_(&panel_)
    , controller_(AppWindows{panel_, subtitles_, chat_, library_, settings_, slides_, login_, account_, desktop_},
                  services())
{
    MainMenu::build(panel_.menuBar(), controller_, [] { QCoreApplication::quit(); });
}

DesktopApp::~DesktopApp() = default;

AppServices DesktopApp::services()
{
    return {hub_,
            std::make_shared<Text::SystemClock>(),
            Text::mainThreadSchedule(),
            [this](const Config &config) { return makeSource(config, hub_); },
            [](const Config &config) { return makeProvider(config); },
            [](const Config &config) { return makeFastProvider(config); },
            PocketSphinxFileRecognizer::factory()};
}

void DesktopApp::launch()
{
    const auto pageReady = [this] {
        if (panel_.transcriptView().ready() && panel_.feed().ready())
            onPagesReady();
    };
    panel_.transcriptView().onReady = pageReady;
    panel_.feed().onReady = pageReady;
    controller_.launch();
}

void DesktopApp::terminate()
{
    controller_.terminate();
}
