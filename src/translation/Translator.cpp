#include "translation/Translator.h"

#include "platform/Http.h"
#include "platform/LanguageIdentifier.h"
#include "text/Characters.h"
#include "translation/LibreTranslateEngine.h"
#include "translation/ModelTranslationEngine.h"

#include <QCoreApplication>
#include <QFutureWatcher>
#include <QThread>
#include <QtConcurrent/QtConcurrentRun>

namespace {

QString label(const QString &code)
{
    const std::optional<Language> language = Translator::language(code);
    return language ? language->label : code;
}

QString serverSetUp()
{
    return QStringLiteral(
        "LibreTranslate（pip install libretranslate，或者 docker run -p 5000:5000 libretranslate/libretranslate）");
}

// What the user must hear after the availability check; empty when all is well.
QString noteFor(const std::optional<QStringList> &missing, const QString &target, const QUrl &server,
                bool withFallback)
{
    const QString address = server.toString();
    if (!missing) {
        if (withFallback)
            return QStringLiteral("没有连上本机的翻译服务（") + address
                + QStringLiteral("），现在先用快速模型翻译。\n想离线翻译，可以装好 ") + serverSetUp()
                + QStringLiteral("，运行起来后就会自动改用它。");
        return QStringLiteral("还不能翻译：没有连上本机的翻译服务（") + address + QStringLiteral("）。\n请装好 ")
            + serverSetUp() + QStringLiteral("并运行起来，或者在设置里填好 API key 用快速模型翻译。");
    }
    if (missing->isEmpty())
        return {};
    QStringList names;
    for (const QString &code : *missing)
        names.append(label(code));
    return QStringLiteral("翻译需要先下载语言：") + names.join(u'、') + QStringLiteral(" → ") + label(target)
        + QStringLiteral("。\n请在本机的 LibreTranslate 翻译服务（") + address
        + QStringLiteral("）里装好这些语言（启动时用 --load-only 列出要用的语言，再加 --update-models 下载），再重新打开 Quillet。");
}

bool onMainThread()
{
    return QThread::currentThread() == QCoreApplication::instance()->thread();
}

} // namespace

Translator::Translator() = default;

Translator::~Translator() = default;

QString Translator::code(const QString &id)
{
    const QString language = LanguageIdentifier::languageCode(id);
    if (language == u"zh")
        return QStringLiteral("zh-Hans");
    return language.isEmpty() ? id : language;
}

std::optional<Language> Translator::language(const QString &code)
{
    for (const Language &language : Language::all()) {
        if (Translator::code(language.locale) == code)
            return language;
    }
    return std::nullopt;
}

void Translator::setFallback(std::shared_ptr<const AIProvider> provider)
{
    fallback_ = std::move(provider);
}

void Translator::setLanguages(const QStringList &sources, const QString &target)
{
    Q_ASSERT(onMainThread());
    lanes_.clear();
    target_ = code(target);
    QStringList codes;
    for (const QString &source : sources)
        codes.append(code(source));
    primary_ = codes.value(0);
    candidates_ = codes + QStringList{target_};

    server_ = std::make_shared<LibreTranslateEngine>(LibreTranslateEngine::configuredUrl());
    QList<std::shared_ptr<const TranslationEngine>> engines{server_};
    if (fallback_)
        engines.append(std::make_shared<ModelTranslationEngine>(fallback_));
    QStringList distinct;
    for (const QString &source : codes) {
        if (source == target_ || distinct.contains(source))
            continue;
        distinct.append(source);
        lanes_[source] = std::make_unique<Lane>(source, target_, engines);
    }
    ++generation_;
    if (!distinct.isEmpty())
        checkInstalled(distinct);
}

void Translator::checkInstalled(const QStringList &codes)
{
    // A watcher that dies with context_ rather than QFuture::then(context, ...), which asserts in
    // Qt 6.4 when the context is gone before the task ends.
    using Watcher = QFutureWatcher<std::optional<QStringList>>;
    auto *watcher = new Watcher(&context_);
    QObject::connect(watcher, &Watcher::finished, watcher,
                     [this, watcher, generation = generation_, target = target_, address = server_->base(),
                      withFallback = fallback_ != nullptr] {
                         watcher->deleteLater();
                         if (generation != generation_)
                             return;
                         const QString note = noteFor(watcher->result(), target, address, withFallback);
                         if (!note.isEmpty())
                             onNote(note);
                     });
    watcher->setFuture(QtConcurrent::run(&Http::taskPool(), [server = server_, codes, target = target_] {
        return server->missing(codes, target);
    }));
}

void Translator::translate(const QString &text, Done done)
{
    Q_ASSERT(onMainThread());
    if (Text::trimmed(text).isEmpty()) {
        done(text);
        return;
    }
    const QString detected = detect(text);
    if (detected == target_) {
        done(text);
        return;
    }
    const auto lane = lanes_.find(detected);
    if (lane == lanes_.end()) {
        done(std::nullopt);
        return;
    }
    lane->second->add(text, std::move(done));
}

QString Translator::detect(const QString &text) const
{
    // No languages in play yet: nothing restricts the guess.
    const std::optional<QString> dominant = candidates_.isEmpty() ? LanguageIdentifier::dominant(text)
                                                                  : LanguageIdentifier::dominant(text, candidates_);
    return code(dominant.value_or(primary_));
}
