#pragma once

// One listening run of an engine, used on the engine's loop thread only: each pass polls the
// caption source, keeps the lines written in the lecture language, reports the draft, the lines
// and the status, and hands the new text to the triggers. The caller sleeps interval() between
// passes.

#include "captions/CaptionSource.h"
#include "engine/EngineState.h"
#include "engine/Triggers.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <memory>

class PassLoop final
{
public:
    // Reports that the engine is listening and starts the source; false (with the problem on
    // the status line) when the source can't run.
    static bool startSource(const EngineState &state, CaptionSource &source);

    PassLoop(std::shared_ptr<EngineState> state, CaptionSource &source);

    void pass();
    Text::Clock::Duration interval() const;

private:
    QStringList acceptedLines(const QString &text) const;
    // The lines that enter the transcript: all of a sound source, the new ones of a window.
    QStringList take(const QStringList &lines);
    void reportIdle();

    std::shared_ptr<EngineState> state_;
    CaptionSource &source_;
    Triggers triggers_;
    const bool window_;
    QString lastDraft_;
    bool idle_ = false;
    bool first_ = true;
    QSet<QString> seenLines_;
};
