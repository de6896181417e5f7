#include "app/WindowWiring.h"

#include "account/Account.h"
#include "account/Relay.h"
#include "app/ChatDesk.h"
#include "app/ClassLifecycle.h"
#include "app/LiveObjects.h"
#include "report/Inbox.h"
#include "settings/ProviderInfo.h"
#include "settings/UserDefaults.h"
#include "translation/Translator.h"

using namespace std::chrono_literals;

namespace {

// The record without the fields that only change how things look or what happens after class:
// a change in these alone restarts nothing.
Config restartRelevant(Config config)
{
    config.layout.reset();
    config.theme.reset();
    config.panelFontSize.reset();
    config.panelBackground.reset();
    config.audioQuality.reset();
    config.storageLimitGB.reset();
    config.refineAfterClass.reset();
    config.emailReport.reset();
    config.autoClean.reset();
    config.overflow.reset();
    config.cloudSync.reset();
    return config;
}

QStringList labels(const QList<Language> &languages)
{
    QStringList names;
    for (const Language &language : languages)
        names << language.label;
    return names;
}

} // namespace

WindowWiring::WindowWiring(AppWindows &windows, AppServices &services, AppState &state, Translator &translator,
                           LiveObjects &live, ClassLifecycle &lifecycle, ChatDesk &chat)
    : windows_(windows)
    , services_(services)
    , state_(state)
    , translator_(translator)
    , live_(live)
    , lifecycle_(lifecycle)
    , chat_(chat)
{
}

QRect WindowWiring::dockedFrame(const QRect &panel, const QRect &bar)
{
    const int height = std::max(bar.height(), dockedHeightAtLeast);
    return QRect(panel.left(), panel.top() - dockGap - height, panel.width(), height);
}

void WindowWiring::wire()
{
    PanelView &panel = windows_.panel;
    ChatView &chat = windows_.chat;
    const auto send = [this](const QString &text, const QList<Attachment> &files) { chat_.chat(text, files); };
    const auto addEvent = [this](const QString &id) { chat_.addToCalendar(id); };
    const auto slidesFile = [this](const QString &path) { windows_.slides.open(path); };
    panel.onSend = send;
    chat.onSend = send;
    panel.onAddEvent = addEvent;
    chat.onAddEvent = addEvent;
    panel.onSlidesFile = slidesFile;
    chat.onSlidesFile = slidesFile;
    panel.onToggleAI = [this] { windows_.chat.toggle(); };
    panel.onSettings = [this] { showSettings(); };
    panel.onToggleSubtitles = [this] { toggleSubtitles(); };
    panel.onToggleMerge = [this] { setMerged(!state_.merged); };
    panel.onTogglePin = [this] { togglePin(); };
    panel.onRecord = [this] { record(); };
    panel.onLibrary = [this] { windows_.library.show(); };
    panel.onAccount = [this] { showAccount(); };
    panel.onSlides = [this] { windows_.slides.toggle(); };
    panel.onClose = [this] { windows_.desktop.quit(); };
    panel.onLanguages = [this](const QString &lecture, const QString &answer) { onLanguages(lecture, answer); };
    panel.onExtras = [this](const QStringList &extras) { onExtras(extras); };
    panel.onSwitches = [this](const Switches &switches) { onSwitches(switches); };
    panel.onMinimize = [this] {
        if (state_.merged)
            setMerged(false);
        keepBarAbove();
    };
    panel.onFrameChanged = [this] {
        if (state_.merged)
            dock();
    };
    windows_.desktop.onActiveChanged = [this] { keepBarAbove(); };

    windows_.slides.makeProvider = [this]() -> std::shared_ptr<const AIProvider> {
        try {
            if (auto fast = services_.makeFastProvider(state_.config))
                return fast;
        } catch (const std::exception &) {
            // Falls back on the main provider below.
        }
        return state_.provider;
    };
    Inbox::onChange = [this] { windows_.panel.setUnread(Inbox::unread() >= 1); };
    windows_.library.isLive = [this](const QString &folder) {
        return state_.session && state_.session->folder() == folder;
    };
    windows_.library.onLiveRename = [this](const QString &title, const std::optional<QString> &category) {
        if (state_.session)
            state_.session->rename(title, category);
    };
    windows_.library.onRefine = [this](const QString &folder) { lifecycle_.refine(folder, true); };

    windows_.settings.onSave = [this](const Config &config, const QString &fontID) { onSave(config, fontID); };
    windows_.settings.onBarSize = [this](double points) { windows_.subtitles.setTextSize(points); };
    windows_.settings.onSignOut = [this] {
        windows_.settings.hide();
        signOut();
    };
    windows_.settings.onClose = [this] { windows_.settings.hide(); };
    windows_.account.onChanged = [this] { windows_.panel.setAccount(Account::email()); };
    windows_.account.onSignOut = [this] { signOut(); };
    windows_.subtitles.onFont = [this](const QString &fontID) {
        windows_.panel.setTranscriptFont(fontID, state_.config.panelFontSize.value_or(15.0));
    };
    translator_.onNote = [this](const QString &note) { windows_.panel.addNote(note); };
}

void WindowWiring::record()
{
    if (state_.session)
        lifecycle_.stopRecording();
    else
        lifecycle_.startRecording();
}

void WindowWiring::signOut()
{
    lifecycle_.stopRecording();
    Account::signOut();
    live_.requireSignIn();
}

void WindowWiring::showAccount()
{
    if (Account::email())
        windows_.account.show();
    else
        live_.requireSignIn();
}

void WindowWiring::showSettings()
{
    windows_.settings.load(state_.config);
    windows_.settings.show();
}

void WindowWiring::togglePin()
{
    state_.pinned = !state_.pinned;
    UserDefaults::setValue(UserDefaults::windowsPinned, state_.pinned);
    windows_.panel.setPinned(state_.pinned);
    keepBarAbove();
}

void WindowWiring::toggleSubtitles()
{
    windows_.subtitles.toggle();
    if (windows_.subtitles.isVisible() && state_.merged)
        dock();
}

void WindowWiring::setMerged(bool merged)
{
    state_.merged = merged;
    windows_.panel.setMerged(merged);
    if (!merged) {
        windows_.subtitles.setFrame(windows_.subtitles.frame().translated(0, -unmergeLift), true);
        return;
    }
    if (!windows_.subtitles.isVisible())
        windows_.subtitles.show();
    dock();
}

void WindowWiring::dock()
{
    windows_.subtitles.setFrame(dockedFrame(windows_.panel.frame(), windows_.subtitles.frame()), false);
}

void WindowWiring::keepBarAbove()
{
    const bool floating = state_.pinned || windows_.desktop.isActive() || windows_.panel.isMinimized();
    windows_.subtitles.setFloating(floating);
    windows_.chat.setFloating(floating);
}

void WindowWiring::applyLook()
{
    windows_.desktop.setTheme(state_.config.theme.value_or(QStringLiteral("system")));
    windows_.panel.setBackground(QStringLiteral("glass"));
    windows_.panel.setTranscriptFont(windows_.subtitles.fontID(), state_.config.panelFontSize.value_or(15.0));
}

void WindowWiring::save()
{
    if (!state_.config.save())
        windows_.panel.addNote(QStringLiteral("⚠️ 设置没能写进文件（磁盘可能满了）：这次的改动在退出后不会保留。"));
}

void WindowWiring::onLanguages(const QString &lecture, const QString &answer)
{
    if (lecture == state_.config.lectureLanguage && answer == state_.config.answerLanguage)
        return;
    state_.config.lectureLanguage = lecture;
    state_.config.answerLanguage = answer;
    save();
    windows_.panel.addNote(u"现在：" + state_.config.lecture().label + u"课 → 翻译成" + state_.config.answer().label);
    live_.restart();
}

void WindowWiring::onExtras(const QStringList &extras)
{
    state_.config.extraLanguages = extras;
    save();
    const QList<Language> languages = state_.config.extras();
    windows_.panel.addNote(languages.isEmpty()
                               ? QString(u"只识别" + state_.config.lecture().label)
                               : QString(u"同时识别：" + state_.config.lecture().label + u" + " + labels(languages).join(u"、")));
    live_.restart();
}

void WindowWiring::onSwitches(const Switches &switches)
{
    state_.config.answerQuestions = switches.questions;
    state_.config.recordExamNotes = switches.exams;
    state_.config.recordKeyPoints = switches.keyPoints;
    state_.config.recordVocabulary = switches.vocabulary;
    save();
    if (state_.engine)
        state_.engine->setSwitches(switches);
    const bool any = switches.questions || switches.exams || switches.keyPoints || switches.vocabulary;
    if (any && !state_.provider)
        windows_.panel.addNote(QStringLiteral("这些功能需要 AI：点右上角齿轮填上 API key 后才会生效。"));
}

void WindowWiring::onSave(const Config &config, const QString &fontID)
{
    const bool providerChanged = config.provider != state_.config.provider;
    const bool restartNeeded = restartRelevant(config) != restartRelevant(state_.config);
    state_.config = config;
    if (providerChanged)
        state_.history.clear();
    windows_.panel.setLayout(config.layout.value_or(QStringLiteral("vertical")));
    applyLook();
    if (fontID != windows_.subtitles.fontID())
        windows_.subtitles.setFontFamily(fontID);
    lifecycle_.enforceStorage();
    if (!restartNeeded)
        return;
    windows_.panel.addNote(config.usesQuilletAI(Relay::available())
                               ? QStringLiteral("设置已保存")
                               : u"设置已保存：" + ProviderInfo::find(config.provider).displayName);
    live_.restart();
}
