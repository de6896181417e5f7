#include "engine/Engine.h"

#include "engine/EngineState.h"
#include "engine/PassLoop.h"

Engine::Engine(Config config, std::unique_ptr<CaptionSource> source, std::shared_ptr<const AIProvider> provider,
               std::shared_ptr<const AIProvider> fast, std::shared_ptr<Text::Clock> clock)
    : state_(std::make_shared<EngineState>(std::move(config), std::move(provider), std::move(fast),
                                           std::move(clock)))
    , source_(std::move(source))
{
}

Engine::~Engine()
{
    stop();
}

void Engine::start()
{
    if (started_)
        return;
    started_ = true;
    state_->callbacks = *this;
    loop_ = std::jthread([this](std::stop_token stop) { run(std::move(stop)); });
}

void Engine::stop()
{
    if (loop_.joinable()) {
        loop_.request_stop();
        loop_.join();
    }
    // Also marks a never-started Engine as stopped for good.
    started_ = true;
    if (!sourceStopped_) {
        source_->stop();
        sourceStopped_ = true;
    }
}

void Engine::run(std::stop_token stop)
{
    if (!PassLoop::startSource(*state_, *source_))
        return;
    PassLoop loop(state_, *source_);
    while (!stop.stop_requested()) {
        loop.pass();
        state_->clock->sleep(loop.interval(), stop);
    }
    // The source is stopped on the thread that has used it all along.
    source_->stop();
    sourceStopped_ = true;
}

void Engine::setSwitches(Switches switches)
{
    state_->setSwitches(switches);
}

QString Engine::fullTranscript(qsizetype chars) const
{
    return state_->fullTranscript(chars);
}

QString Engine::recentTranscript(qsizetype chars, qsizetype lines) const
{
    return state_->recentTranscript(chars, lines);
}

QString Engine::currentSummary() const
{
    return state_->summary();
}

double Engine::ratio(const QString &text) const
{
    return state_->script.ratio(text);
}

const Config &Engine::config() const
{
    return state_->config;
}
