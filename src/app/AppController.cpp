#include "app/AppController.h"

#include "account/Relay.h"
#include "platform/Keychain.h"
#include "report/Inbox.h"
#include "session/SessionStore.h"
#include "settings/ProviderInfo.h"
#include "settings/UserDefaults.h"

using namespace std::chrono_literals;

AppController::AppController(AppWindows windows, AppServices services)
    : windows_(windows)
    , services_(std::move(services))
    , rows_(windows_.panel.transcript(), windows_.subtitles.transcript(), translator_, *services_.clock,
            services_.schedule)
    , chat_(windows_, state_, *services_.clock)
    , live_(windows_, services_, state_, translator_, rows_, chat_)
    , lifecycle_(windows_, services_, state_, translator_, rows_, chat_, live_)
    , wiring_(windows_, services_, state_, translator_, live_, lifecycle_, chat_)
{
    state_.config = Config::load();
    live_.onClassEnd = [this] { lifecycle_.classEnded(); };
    state_.pinned = UserDefaults::value(UserDefaults::windowsPinned, false).toBool();
}

AppController::~AppController()
{
    terminate();
}

void AppController::launch()
{
    PanelView &panel = windows_.panel;
    wiring_.wire();
    panel.setUnread(Inbox::unread() >= 1);
    QStringList extras;
    for (const Language &language : state_.config.extras())
        extras << language.id;
    panel.setLanguages(state_.config.lecture().id, state_.config.answer().id, extras);
    panel.setSwitches(Switches::from(state_.config));

    panel.bringToFront();
    panel.placeDivider();
    panel.setLayout(state_.config.layout.value_or(QStringLiteral("vertical")));
    panel.applyShow(UserDefaults::value(UserDefaults::panelShow, QStringLiteral("both")).toString());
    wiring_.applyLook();
    // The two windows always start apart.
    state_.merged = false;
    panel.setMerged(false);
    UserDefaults::setValue(UserDefaults::windowsPinned, state_.pinned);
    panel.setPinned(state_.pinned);
    wiring_.keepBarAbove();

    live_.restart();
    const QString hint = QStringLiteral("点右上角「● 开始」，翻译内容会显示在这里");
    panel.transcript().clear(hint);
    windows_.subtitles.transcript().clear(hint);
    live_.requireSignIn();
    SessionStore::purgeExpired();
    welcome();
}

void AppController::welcome()
{
    if (state_.config.usesQuilletAI(Relay::available())
        || Keychain::get(ProviderInfo::find(state_.config.provider).id))
        return;
    windows_.panel.addNote(QStringLiteral("欢迎使用 Quillet Beta！\n先点右上角的齿轮，选一个 AI 并填上你的 API key。"
                                          "字幕和翻译不需要 key，现在就能用。"));
    services_.schedule(600ms, [this] { wiring_.showSettings(); });
}

void AppController::terminate()
{
    if (terminated_)
        return;
    terminated_ = true;
    lifecycle_.finishSilently();
}
