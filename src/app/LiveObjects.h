#pragma once

// Start-up and restart: brings the live objects in line with the settings record (the main
// provider, the translator's languages, the Corrector, and, while a class runs, a new Engine),
// starts the Engine with every callback moved to the main thread, and checks the sign-in.
//
// Main thread only. Callbacks of an engine that has been replaced or stopped are dropped.

#include "app/AppServices.h"
#include "app/AppState.h"
#include "app/AppWindows.h"
#include "app/MainQueue.h"

#include <QObject>

class ChatDesk;
class RowPipeline;
class Translator;

class LiveObjects final
{
public:
    LiveObjects(AppWindows &windows, AppServices &services, AppState &state, Translator &translator,
                RowPipeline &rows, ChatDesk &chat);

    void restart();
    void startEngine();
    // Stops the running engine (if any) and drops whatever it still had on its way.
    void stopEngine();
    void requireSignIn();
    // The title of the AI in use: "Quillet AI" through the relay, else the provider's name.
    QString aiName() const;

    // The teacher closed the class (set by the coordinator to its lifecycle).
    std::function<void()> onClassEnd = [] {};

private:
    void makeProvider();
    void makeCorrector(const std::shared_ptr<const AIProvider> &fast);
    std::shared_ptr<const AIProvider> fastProvider() const;
    void wire(Engine &engine);
    void addTerms(const QList<VocabularyTerm> &terms);

    AppWindows &windows_;
    AppServices &services_;
    AppState &state_;
    Translator &translator_;
    RowPipeline &rows_;
    ChatDesk &chat_;
    MainQueue queue_;
    QObject context_;   // the account checks' context
};
