#include "engine/Corrector.h"

#include "ai/ChatTask.h"
#include "engine/Prompts.h"
#include "platform/Log.h"
#include "text/Characters.h"
#include "text/Json.h"

#include <QCoreApplication>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QThread>

#include <utility>

namespace {

constexpr qsizetype contextKept = 30;
constexpr qsizetype contextInPrompt = 12;

struct Fix
{
    QString text;
    QString translation;
};

// A model may put a number or a boolean where text belongs; its written form is what it meant.
QString textual(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Double:
    case QJsonValue::Bool:
        return value.toVariant().toString();
    case QJsonValue::Array:
        return QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    case QJsonValue::Object:
        return QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    default:
        return {};
    }
}

// The entries of the reply's array, or nothing unless it holds exactly count objects.
std::optional<QList<Fix>> parse(const std::optional<QString> &reply, qsizetype count)
{
    if (!reply)
        return std::nullopt;
    const std::optional<QJsonArray> array = Text::Json::arrayIn(*reply);
    if (!array || array->size() != count)
        return std::nullopt;
    QList<Fix> fixes;
    for (const QJsonValue &entry : *array) {
        if (!entry.isObject())
            return std::nullopt;
        const QJsonObject object = entry.toObject();
        fixes.append({Text::trimmed(textual(object.value(u"text"))),
                      Text::trimmed(textual(object.value(u"translation")))});
    }
    return fixes;
}

QStringList nonBlankCharacters(const QString &text)
{
    QStringList kept = Text::characters(text);
    kept.removeIf([](const QString &character) { return Text::trimmed(character).isEmpty(); });
    return kept;
}

// A model can damage a sentence as well as fix it: the fix must keep about the length of the
// original and mostly its characters.
bool acceptable(const QString &fixed, const QString &original)
{
    if (fixed.isEmpty())
        return false;
    const qsizetype length = Text::characterCount(fixed);
    const qsizetype base = std::max<qsizetype>(Text::characterCount(original), 1);
    // length / base strictly between 0.6 and 1.6, in whole numbers so the bounds are exact.
    if (length * 10 <= base * 6 || length * 10 >= base * 16)
        return false;
    // Each non-blank character of the fix that is still unused in the original counts once.
    const QStringList ofFix = nonBlankCharacters(fixed);
    const qsizetype count = Text::sharedCount(ofFix, nonBlankCharacters(original));
    return count * 2 >= std::max<qsizetype>(ofFix.size(), 1);
}

} // namespace

std::shared_ptr<Corrector> Corrector::make(std::shared_ptr<const AIProvider> provider, QString language,
                                           QString target)
{
    return std::shared_ptr<Corrector>(new Corrector(std::move(provider), std::move(language), std::move(target)));
}

Corrector::Corrector(std::shared_ptr<const AIProvider> provider, QString language, QString target)
    : provider_(std::move(provider))
    , language_(std::move(language))
    , target_(std::move(target))
{
}

Corrector::~Corrector() = default;

void Corrector::add(int id, const QString &text)
{
    Q_ASSERT(QThread::currentThread() == QCoreApplication::instance()->thread());
    pending_.append({id, text});
    flush();
}

void Corrector::cancel()
{
    cancelled_ = true;
    pending_.clear();
}

void Corrector::flush()
{
    if (cancelled_ || busy_ || pending_.isEmpty())
        return;
    const QList<Row> batch = std::exchange(pending_, {});
    busy_ = true;
    // The application as context: a Corrector dropped meanwhile still handles its reply.
    ChatTask::start(provider_, Prompts::correctSystem(), {Turn{QStringLiteral("user"), prompt(batch), {}}},
                    QCoreApplication::instance(),
                    [self = shared_from_this(), batch](const std::optional<QString> &reply) { self->finish(batch, reply); });
}

QString Corrector::prompt(const QList<Row> &batch) const
{
    QStringList texts;
    for (const Row &row : batch)
        texts.append(row.text);
    return Prompts::fill(Prompts::correct(),
                         {{QStringLiteral("lecture_language"), language_},
                          {QStringLiteral("answer_language"), target_},
                          {QStringLiteral("context"), context_.mid(std::max<qsizetype>(context_.size() - contextInPrompt, 0)).join(u'\n')},
                          {QStringLiteral("lines"),
                           QString::fromUtf8(QJsonDocument(QJsonArray::fromStringList(texts)).toJson(QJsonDocument::Compact))}});
}

void Corrector::finish(const QList<Row> &batch, const std::optional<QString> &reply)
{
    if (cancelled_)
        return;
    const std::optional<QList<Fix>> fixes = parse(reply, batch.size());
    if (!fixes)
        Log::write(QStringLiteral("AI 纠错 no usable reply: ") + (reply ? Text::prefix(*reply, 200) : QStringLiteral("nil")));
    for (qsizetype i = 0; i < batch.size(); ++i) {
        if (fixes)
            apply(batch[i], (*fixes)[i].text, (*fixes)[i].translation);
        else
            context_.append(batch[i].text);
    }
    if (context_.size() > contextKept)
        context_ = context_.mid(context_.size() - contextKept);
    busy_ = false;
    flush();
}

void Corrector::apply(const Row &row, const QString &fixed, const QString &translation)
{
    const bool accepted = acceptable(fixed, row.text);
    const QString kept = accepted ? fixed : row.text;
    if (kept != row.text)
        Log::write(QStringLiteral("AI 纠错: ") + row.text + QStringLiteral(" → ") + kept);
    // A translation belongs to the fix: a refused fix takes its translation with it.
    if (!translation.isEmpty() && kept == fixed)
        onFix(row.id, kept, translation);
    context_.append(kept);
}
