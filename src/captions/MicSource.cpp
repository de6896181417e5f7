#include "captions/MicSource.h"

#include "captions/Sentences.h"
#include "platform/AudioConverter.h"
#include "platform/LanguageIdentifier.h"
#include "platform/MicHub.h"
#include "text/Characters.h"
#include "text/Regex.h"

#include <atomic>
#include <cmath>

namespace {

// The letters of a text, code point by code point.
QList<char32_t> lettersOf(const QString &text)
{
    QList<char32_t> letters;
    for (const char32_t codePoint : text.toUcs4()) {
        if (Text::isIn(Text::CharClass::Letters, codePoint))
            letters << codePoint;
    }
    return letters;
}

bool hasLetter(const QString &text)
{
    return !lettersOf(text).isEmpty();
}

} // namespace

// The audio thread's side: converts each microphone buffer and queues it for every recogniser.
class MicSource::Listening final
{
public:
    Listening(std::unique_ptr<AudioConverter> converter, std::vector<std::shared_ptr<SpeechRecognizer>> recognizers)
        : converter_(std::move(converter))
        , recognizers_(std::move(recognizers))
    {
    }

    void hear(const AudioBuffer &buffer)
    {
        const std::span<const qint16> samples = converter_->convert(buffer);
        if (samples.empty())
            return;
        // A file read as fast as possible waits for recognition; a device's sound never does.
        if (buffer.mayWait) {
            for (const auto &recognizer : recognizers_)
                recognizer->waitForRoom();
        }
        bool dropped = false;
        for (const auto &recognizer : recognizers_)
            dropped = !recognizer->feed(samples) || dropped;
        if (dropped)
            droppedSamples_ += qint64(samples.size());
    }

    void finish()
    {
        for (const auto &recognizer : recognizers_)
            recognizer->finish();
    }

    // A recogniser's trouble, or the sound lost because recognition fell behind.
    std::optional<QString> problem() const
    {
        for (const auto &recognizer : recognizers_) {
            if (auto problem = recognizer->problem())
                return problem;
        }
        const qint64 dropped = droppedSamples_;
        if (dropped == 0)
            return std::nullopt;
        const double seconds = double(dropped) / recognizers_.front()->sampleRate();
        return u"本机语音识别跟不上，已跳过 " + QString::number(std::max(1.0, std::round(seconds))) + u" 秒声音";
    }

private:
    const std::unique_ptr<AudioConverter> converter_;
    const std::vector<std::shared_ptr<SpeechRecognizer>> recognizers_;
    std::atomic<qint64> droppedSamples_ = 0;
};

MicSource::MicSource(QStringList localeIDs, MicHub &hub, SpeechRecognizer::Factory recognizers)
    : localeIDs_(std::move(localeIDs))
    , hub_(hub)
    , recognizers_(std::move(recognizers))
{
}

MicSource::~MicSource()
{
    stop();
}

QString MicSource::noMicrophone()
{
    return QStringLiteral("没有麦克风权限：请在 设置 → 声音 → 输入 中选择麦克风并允许 Quillet Beta 使用");
}

std::optional<QString> MicSource::start()
{
    // Linux asks no permission: the microphone is allowed when an input device is there.
    if (!hub_.format().isValid())
        return noMicrophone();

    std::vector<std::shared_ptr<SpeechRecognizer>> recognizers;
    QStringList locales;
    if (auto problem = loadRecognizers(recognizers, locales))
        return problem;

    // One sound for every recogniser: they must agree on the rate.
    const int sampleRate = recognizers.empty() ? 0 : recognizers.front()->sampleRate();
    const bool agree = std::all_of(recognizers.begin(), recognizers.end(),
                                   [&](const auto &recognizer) { return recognizer->sampleRate() == sampleRate; });
    if (sampleRate <= 0 || !agree)
        return QStringLiteral("找不到可用的音频格式");

    const bool primaryIsLatin = MicSource::primaryIsLatin(localeIDs_.front());
    for (size_t i = 0; i < recognizers.size(); ++i) {
        const Reading reading{locales[qsizetype(i)], locales[qsizetype(i)] == localeIDs_.front()};
        readers_.emplace_back([this, recognizer = recognizers[i], reading, primaryIsLatin](std::stop_token stop) {
            while (const auto result = recognizer->next(stop))
                receive(*result, reading, primaryIsLatin);
        });
    }

    auto converter = AudioConverter::create(hub_.format(), sampleRate);
    if (!converter)
        return QStringLiteral("无法转换麦克风音频格式");
    listening_ = std::make_shared<Listening>(std::move(converter), std::move(recognizers));

    return listen(hub_, listening_, micListener_);
}

std::optional<QString> MicSource::loadRecognizers(std::vector<std::shared_ptr<SpeechRecognizer>> &recognizers,
                                                  QStringList &locales)
{
    // The lecture language must be supported; an extra language need not be.
    for (const QString &locale : localeIDs_) {
        if (recognizers_.supports(locale))
            locales << locale;
        else if (locales.isEmpty())
            return u"本机语音识别不支持这门课的语言（" + locale + u"）";
    }
    for (const QString &locale : locales) {
        SpeechRecognizer::Made made = recognizers_.make(locale);
        if (auto *problem = std::get_if<QString>(&made))
            return *problem;
        recognizers.push_back(std::move(std::get<std::unique_ptr<SpeechRecognizer>>(made)));
    }
    return std::nullopt;
}

QString MicSource::read()
{
    return takeFinals().join(u'\n');
}

std::optional<QString> MicSource::problem()
{
    return listening_ ? listening_->problem() : std::nullopt;
}

QString MicSource::draft()
{
    std::scoped_lock lock(mutex_);
    return pending_;
}

QStringList MicSource::takeFinals()
{
    std::scoped_lock lock(mutex_);
    return std::exchange(lines_, {});
}

void MicSource::stop()
{
    if (micListener_)
        hub_.remove(*micListener_);
    micListener_.reset();
    if (listening_)
        listening_->finish();
    for (std::jthread &reader : readers_)
        reader.request_stop();
    readers_.clear();
    listening_.reset();
}

void MicSource::receive(const SpeechRecognizer::Result &result, const Reading &reading, bool primaryIsLatin)
{
    const QString text = Text::trimmed(cleaned(result.pieces, reading.primary, primaryIsLatin));
    if (text.isEmpty())
        return;
    if (!result.isFinal) {
        if (passes(text, reading)) {
            std::scoped_lock lock(mutex_);
            pending_ = text;
        }
        return;
    }

    QStringList kept;
    for (const QString &sentence : Sentences::split(text)) {
        if (passes(sentence, reading))
            kept << sentence;
    }
    std::scoped_lock lock(mutex_);
    lines_ << kept;
    if (lines_.size() > linesAtMost)
        lines_.remove(0, lines_.size() - linesAtMost);
    pending_.clear();
}

bool MicSource::passes(const QString &text, const Reading &reading)
{
    return reading.primary ? hasLetter(text) : fits(text, reading.locale);
}

QString MicSource::cleaned(const QList<SpeechRecognizer::Piece> &pieces, bool primary, bool primaryIsLatin)
{
    const double threshold = primary ? 0.45 : 0.6;
    QList<QList<QString>> groups{{}};
    for (const SpeechRecognizer::Piece &piece : pieces) {
        const QList<char32_t> letters = lettersOf(Text::trimmed(piece.text));
        if (letters.isEmpty()) {
            if (!groups.last().isEmpty())
                groups.last() << piece.text;
            continue;
        }
        // Stray Latin words in a Korean, Japanese or Chinese lecture pass only when quite sure.
        const bool nonAscii = std::any_of(letters.begin(), letters.end(), [](char32_t c) { return c > 0x7F; });
        const bool accepted = piece.confidence >= threshold
                              && (!primary || nonAscii || primaryIsLatin || piece.confidence >= 0.75);
        if (accepted)
            groups.last() << piece.text;
        else if (!groups.last().isEmpty())
            groups << QList<QString>();   // a hole in the speech splits the text
    }

    static const Text::Regex blanks(QStringLiteral("\\s+"));
    const qsizetype wordsAtLeast = primary ? 1 : 3;
    QStringList counted;
    for (const QList<QString> &group : groups) {
        const auto words = std::count_if(group.begin(), group.end(), [](const QString &text) { return hasLetter(text); });
        if (words >= wordsAtLeast)
            counted << Text::trimmed(blanks.replace(group.join(QString()), QStringLiteral(" ")));
    }
    return counted.join(u' ');
}

bool MicSource::primaryIsLatin(const QString &firstLocale)
{
    const QString first = LanguageIdentifier::languageCode(firstLocale);
    return first != u"ko" && first != u"ja" && first != u"zh";
}

bool MicSource::fits(const QString &text, const QString &language)
{
    const qsizetype letters = lettersOf(text).size();
    if (letters < 2)
        return false;
    const auto dominant = LanguageIdentifier::dominant(text);
    if (!dominant)
        return true;
    const QString code = LanguageIdentifier::languageCode(language);
    const QString found = LanguageIdentifier::languageCode(*dominant);
    // Japanese written in kanji alone reads as Chinese.
    if (found == code || (code == u"ja" && found == u"zh"))
        return true;
    // Too short to judge.
    return letters < 6;
}
