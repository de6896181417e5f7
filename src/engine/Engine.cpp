#include "engine/Engine.h"

#include "engine/CallGate.h"
#include "engine/EngineState.h"
#include "engine/PassLoop.h"

namespace {

// Every callback through the gate, so that closing it silences the engine at once.
EngineCallbacks guarded(const EngineCallbacks &callbacks, const std::shared_ptr<CallGate> &gate)
{
    EngineCallbacks g;
    g.onResult = CallGate::guard(gate, callbacks.onResult);
    g.onStatus = CallGate::guard(gate, callbacks.onStatus);
    g.onCaption = CallGate::guard(gate, callbacks.onCaption);
    g.onLine = CallGate::guard(gate, callbacks.onLine);
    g.onSummary = CallGate::guard(gate, callbacks.onSummary);
    g.onTerms = CallGate::guard(gate, callbacks.onTerms);
    g.onClassEnd = CallGate::guard(gate, callbacks.onClassEnd);
    g.onEvent = CallGate::guard(gate, callbacks.onEvent);
    return g;
}

} // namespace

Engine::Engine(Config config, std::unique_ptr<CaptionSource> source, std::shared_ptr<const AIProvider> provider,
               std::shared_ptr<const AIProvider> fast, std::shared_ptr<Text::Clock> clock)
    : state_(std::make_shared<EngineState>(std::move(config), std::move(provider), std::move(fast),
                                           std::move(clock)))
    , source_(std::move(source))
    , gate_(std::make_shared<CallGate>())
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
    state_->callbacks = guarded(*this, gate_);
    loop_ = std::jthread([this](std::stop_token stop) { run(std::move(stop)); });
}

void Engine::stop()
{
    // First, so that model calls still in flight and the loop's last pass report nothing.
    gate_->close();
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
