#pragma once

// The whole application as a student starts it: the microphone hub, every window, the desktop
// services, the coordinator that joins them and the menu. `main` makes one and runs the event
// loop; the application test makes one in its own process. Main thread only.

#include "app/AppController.h"
#include "platform/MicHub.h"
#include "ui/account/AccountWindow.h"
#include "ui/account/LoginWindow.h"
#include "ui/chat/AIWindow.h"
#include "ui/desktop/DesktopServices.h"
#include "ui/library/LibraryWindow.h"
#include "ui/panel/Panel.h"
#include "ui/settings/SettingsSheet.h"
#include "ui/slides/SlidesWindow.h"
#include "ui/subtitles/SubtitleWindow.h"

class DesktopApp final
{
public:
    DesktopApp();
    ~DesktopApp();
    DesktopApp(const DesktopApp &) = delete;
    DesktopApp &operator=(const DesktopApp &) = delete;
    DesktopApp(DesktopApp &&) = delete;
    DesktopApp &operator=(DesktopApp &&) = delete;

    // Shows the panel and everything the coordinator brings up at launch.
    void launch();
    // A running class is kept; safe to call more than once.
    void terminate();

    // Once, when the panel's transcript and feed pages have both loaded.
    std::function<void()> onPagesReady = [] {};

    AppController &controller() { return controller_; }
    Panel &panel() { return panel_; }
    SubtitleWindow &subtitles() { return subtitles_; }
    AIWindow &chat() { return chat_; }
    LibraryWindow &library() { return library_; }

private:
    AppServices services();

    MicHub hub_;
    Panel panel_;
    SubtitleWindow subtitles_;
    AIWindow chat_;
    LibraryWindow library_;
    SettingsSheet settings_;
    SlidesWindow slides_;
    LoginWindow login_;
    AccountWindow account_;
    DesktopServices desktop_;
    AppController controller_;
};
