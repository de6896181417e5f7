#pragma once

// The one coordinator of the application: it owns the live objects (the settings record in
// force, the providers, the translator, the Corrector, the running Engine and the class being
// recorded) and is the only place where they meet the windows. Its jobs are split among
// collaborators: start-up and restart (LiveObjects), the rows of the transcript (RowPipeline),
// the two ends of a class (ClassLifecycle), the chat and the feed (ChatDesk), and the windows'
// callbacks and relations (WindowWiring).
//
// Main thread only. The windows and the services outlive it; so do the microphone hub and the
// clock. The menu's items call the operations below.

#include "app/AppServices.h"
#include "app/AppState.h"
#include "app/AppWindows.h"
#include "app/ChatDesk.h"
#include "app/ClassLifecycle.h"
#include "app/LiveObjects.h"
#include "app/RowPipeline.h"
#include "app/WindowWiring.h"
#include "translation/Translator.h"

class AppController final
{
public:
    AppController(AppWindows windows, AppServices services);
    ~AppController();
    AppController(const AppController &) = delete;
    AppController &operator=(const AppController &) = delete;
    AppController(AppController &&) = delete;
    AppController &operator=(AppController &&) = delete;

    // Everything from wiring the windows to the first note; no engine runs until Start.
    void launch();
    // The application ends (the Quit item, the panel closed, a signal, the session's logout): a
    // running class is kept, without a question.
    void terminate();

    void menuSettings() { wiring_.showSettings(); }
    void menuRecord() { wiring_.record(); }
    void menuLibrary() { windows_.library.show(); }
    void menuSubtitles() { wiring_.toggleSubtitles(); }
    void menuChat() { windows_.panel.bringToFront(); }
    void menuAI() { windows_.chat.toggle(); }
    void menuMerge() { wiring_.setMerged(!state_.merged); }
    void openNotes() { chat_.openNotes(); }
    void openWordBook() { chat_.openWordBook(); }
    void showAbout() { chat_.showAbout(); }

    const AppState &state() const { return state_; }

private:
    void welcome();

    AppWindows windows_;
    AppServices services_;
    AppState state_;
    Translator translator_;
    RowPipeline rows_;
    ChatDesk chat_;
    LiveObjects live_;
    ClassLifecycle lifecycle_;
    WindowWiring wiring_;
    bool terminated_ = false;
};
