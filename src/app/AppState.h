#pragma once

// The coordinator's own state, shared by its collaborators on the main thread: the settings
// record in force, the live objects of a class and what the windows show of it.

#include "ai/AIProvider.h"
#include "engine/ClassEvent.h"
#include "engine/Corrector.h"
#include "engine/Engine.h"
#include "session/LiveSession.h"
#include "settings/Config.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QStringList>

#include <memory>

struct AppState
{
    Config config;
    std::shared_ptr<const AIProvider> provider;   // the main one; none without a key
    std::shared_ptr<Corrector> corrector;
    std::unique_ptr<Engine> engine;                // only while recording
    std::unique_ptr<LiveSession> session;          // from Start until the save question is answered
    QList<Turn> history;
    bool chatBusy = false;
    bool merged = false;
    bool pinned = false;
    bool finalSummaryDone = false;
    QSet<QString> refining;                        // class folders being refined
    QList<QStringList> classTerms;                 // [term, meaning, note], newest first
    QMap<QString, ClassEvent> liveEvents;          // by short id
    int clockGeneration = 0;                       // a recording clock tick of an older class stops
};
