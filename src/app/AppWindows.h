#pragma once

// Every window the coordinator talks to, as the interfaces it uses; main.cpp hands in the real
// ones, tests recording fakes. The windows outlive the coordinator.

#include "app/views/AccountView.h"
#include "app/views/ChatView.h"
#include "app/views/Desktop.h"
#include "app/views/LibraryView.h"
#include "app/views/LoginView.h"
#include "app/views/PanelView.h"
#include "app/views/SettingsView.h"
#include "app/views/SlidesView.h"
#include "app/views/SubtitleView.h"

struct AppWindows
{
    PanelView &panel;
    SubtitleView &subtitles;
    ChatView &chat;
    LibraryView &library;
    SettingsView &settings;
    SlidesView &slides;
    LoginView &login;
    AccountView &account;
    Desktop &desktop;
};
