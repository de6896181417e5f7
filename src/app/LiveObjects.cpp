#include "app/LiveObjects.h"

#include "account/Account.h"
#include "account/Relay.h"
#include "ai/AIError.h"
#include "app/ChatDesk.h"
#include "app/RowPipeline.h"
#include "settings/ProviderInfo.h"
#include "translation/Translator.h"

LiveObjects::LiveObjects(AppWindows &windows, AppServices &services, AppState &state, Translator &translator,
                         RowPipeline &rows, ChatDesk &chat)
    : windows_(windows)
    , services_(services)
    , state_(state)
    , translator_(translator)
    , rows_(rows)
    , chat_(chat)
{
}

QString LiveObjects::aiName() const
{
    if (state_.config.usesQuilletAI(Relay::available()))
        return QStringLiteral("Quillet AI");
    return ProviderInfo::find(state_.config.provider).displayName;
}

void LiveObjects::restart()
{
    stopEngine();
    windows_.panel.setTitle(aiName());
    windows_.chat.setName(aiName());
    makeProvider();

    QStringList sources{state_.config.lecture().locale};
    for (const Language &extra : state_.config.extras())
        sources << extra.locale;
    const auto fast = fastProvider();
    translator_.setFallback(fast);
    translator_.setLanguages(sources, state_.config.answer().locale);
    makeCorrector(fast);

    state_.engine.reset();
    if (state_.session)
        startEngine();
    else
        windows_.panel.setStatus(QStringLiteral("未开始"));
}

void LiveObjects::makeProvider()
{
    state_.provider.reset();
    try {
        state_.provider = services_.makeProvider(state_.config);
    } catch (const AIError &error) {
        windows_.panel.addNote(u"还没有填 " + error.displayName()
                               + u" 的 API key：翻译照常工作，AI 功能需要 key。点右上角齿轮去设置。");
    } catch (const std::exception &) {
        // Any other failure leaves the application without AI, and says nothing.
    }
}

std::shared_ptr<const AIProvider> LiveObjects::fastProvider() const
{
    try {
        return services_.makeFastProvider(state_.config);
    } catch (const std::exception &) {
        return nullptr;
    }
}

void LiveObjects::makeCorrector(const std::shared_ptr<const AIProvider> &fast)
{
    state_.corrector.reset();
    if (state_.config.aiCorrect != false && fast)
        state_.corrector = Corrector::make(fast, state_.config.lecture().id, state_.config.answer().id);
    rows_.setCorrector(state_.corrector);
}

void LiveObjects::stopEngine()
{
    queue_.expire();
    if (state_.engine)
        state_.engine->stop();
}

void LiveObjects::startEngine()
{
    auto engine = std::make_unique<Engine>(state_.config, services_.makeSource(state_.config), state_.provider,
                                           fastProvider(), services_.clock);
    wire(*engine);
    engine->start();
    state_.engine = std::move(engine);
}

void LiveObjects::wire(Engine &engine)
{
    engine.onSummary = queue_.bind<const QString &>([this](const QString &text) { chat_.showSummary(text, false); });
    engine.onTerms = queue_.bind<const QList<VocabularyTerm> &>([this](const QList<VocabularyTerm> &terms) { addTerms(terms); });
    engine.onClassEnd = queue_.bind<>([this] { onClassEnd(); });
    engine.onEvent = queue_.bind<const ClassEvent &>([this](const ClassEvent &event) { chat_.showEvent(event); });
    engine.onResult = queue_.bind<const QString &, const QString &, const QString &>(
        [this](const QString &kind, const QString &text, const QString &time) {
            windows_.panel.addCard(kind, text, time);
            windows_.chat.addCard(kind, text, time);
            if (state_.session)
                state_.session->addNote(kind, text);
        });
    engine.onStatus = queue_.bind<const QString &>([this](const QString &text) { windows_.panel.setStatus(text); });
    engine.onCaption = queue_.bind<const QString &>([this](const QString &draft) { rows_.showDraft(draft); });
    engine.onLine = queue_.bind<const QString &>([this](const QString &line) {
        rows_.showLine(line);
        windows_.slides.heard(line);
    });
}

void LiveObjects::addTerms(const QList<VocabularyTerm> &terms)
{
    QSet<QString> known;
    for (const QStringList &entry : state_.classTerms)
        known.insert(entry.value(0).toLower());
    QList<VocabularyTerm> fresh;
    for (const VocabularyTerm &term : terms) {
        if (!known.contains(term.term.toLower()))
            fresh << term;
    }
    if (fresh.isEmpty())
        return;
    QList<SessionData::Term> stored;
    for (const VocabularyTerm &term : fresh) {
        state_.classTerms.prepend({term.term, term.meaning, term.note});
        stored << SessionData::Term{term.term, term.meaning, term.note};
    }
    windows_.panel.setVocabulary(state_.classTerms);
    windows_.chat.setVocabulary(state_.classTerms);
    if (state_.session)
        state_.session->addTerms(stored);
}

void LiveObjects::requireSignIn()
{
    windows_.login.onClose = [this] { windows_.desktop.quit(); };
    windows_.login.onSignedIn = [this] {
        windows_.panel.bringToFront();
        windows_.panel.setAccount(Account::email());
        restart();
    };
    if (Account::signedIn()) {
        windows_.panel.setAccount(Account::email());
        Account::hasPassword(&context_, [this](std::optional<bool> has) {
            if (has == false) {
                windows_.panel.orderOut();
                windows_.login.showSetPassword();
            }
        });
        return;
    }
    windows_.panel.setAccount(std::nullopt);
    // Without a reachable account service the application stays usable without sign-in.
    Account::available(&context_, [this](bool available) {
        if (available) {
            windows_.panel.orderOut();
            windows_.login.show();
        }
    });
}
