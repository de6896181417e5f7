#include "platform/PocketSphinxRecognizer.h"

#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

#include <pocketsphinx.h>
#include <sphinxbase/cmn.h>
#include <sphinxbase/feat.h>

#include <cstdlib>

#include <sys/wait.h>
#include <unistd.h>

static_assert(std::is_same_v<mfcc_t, float>, "the saved cepstral mean is kept as floats");

namespace {

// Recognition that falls this far behind (a stalled machine) costs the newest sound, not memory:
// about 10 MB at 16 kHz.
constexpr int queuedSecondsAtMost = 300;

const QString debianEnglish = QStringLiteral("/usr/share/pocketsphinx/model/en-us");

struct Model
{
    QString acoustic;
    QString dictionary;
    QString languageModel;
};

QString loadFailure(const QString &detail)
{
    return u"加载语音识别模型失败，请检查模型文件夹：" + detail;
}

// The parts of a model folder, or what is missing.
std::variant<Model, QString> partsOf(const QString &folder)
{
    const QDir dir(folder);
    Model model;
    for (const QFileInfo &entry : dir.entryInfoList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
        if (QFileInfo::exists(entry.filePath() + QStringLiteral("/mdef"))) {
            model.acoustic = entry.filePath();
            break;
        }
    }
    const QStringList dictionaries = dir.entryList({QStringLiteral("*.dict")}, QDir::Files, QDir::Name);
    // Phonetic language models sit beside the word model in Debian's folder; they recognise no words.
    QStringList languageModels;
    for (const QString &name : dir.entryList({QStringLiteral("*.lm.bin"), QStringLiteral("*.lm"), QStringLiteral("*.lm.DMP")},
                                             QDir::Files, QDir::Name)) {
        if (!name.contains(u"-phone"))
            languageModels << name;
    }
    if (model.acoustic.isEmpty())
        return loadFailure(folder + u" 里没有声学模型（含 mdef 的文件夹）");
    if (dictionaries.isEmpty())
        return loadFailure(folder + u" 里没有发音词典（*.dict）");
    if (languageModels.isEmpty())
        return loadFailure(folder + u" 里没有语言模型（*.lm.bin、*.lm 或 *.lm.DMP）");
    model.dictionary = dir.filePath(dictionaries.front());
    model.languageModel = dir.filePath(languageModels.front());
    return model;
}

ps_decoder_t *open(const Model &model)
{
    const QByteArray acoustic = QFile::encodeName(model.acoustic);
    const QByteArray dictionary = QFile::encodeName(model.dictionary);
    const QByteArray languageModel = QFile::encodeName(model.languageModel);
    // Measured on lecture sentences with and without room noise: with -ascale 12 rather than 20
    // nearly every correct word reaches the 0.45 a lecture language's words need, while most
    // misheard ones stay below; without the second pass and with fewer active models per frame,
    // recognition takes half the time and an utterance's end a tenth, at about the same accuracy.
    cmd_ln_t *config = cmd_ln_init(nullptr, ps_args(), TRUE, "-hmm", acoustic.constData(), "-dict",
                                   dictionary.constData(), "-lm", languageModel.constData(), "-ascale", "12",
                                   "-fwdflat", "no", "-maxhmmpf", "3000", "-logfn", "/dev/null", nullptr);
    if (!config)
        return nullptr;
    ps_decoder_t *decoder = ps_init(config);
    cmd_ln_free_r(config);
    return decoder;
}

// PocketSphinx ends the whole process on some damaged model files, so a child process loads the
// model first; only when it succeeds is the model loaded here.
bool loadsInChild(const Model &model)
{
    const pid_t child = fork();
    if (child == 0) {
        // Registered last, so it runs first: the parent's exit handlers (waiting for threads the
        // child doesn't have) never run when PocketSphinx calls exit().
        std::atexit([] { _exit(1); });
        _exit(open(model) ? 0 : 1);
    }
    if (child < 0)
        return false;
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// "the(2)" → "the"; none for fillers such as "<sil>", "[NOISE]" or "++UM++".
std::optional<QString> spoken(const QString &word)
{
    if (word.isEmpty() || word.startsWith(u'<') || word.startsWith(u'[') || word.startsWith(u'+'))
        return std::nullopt;
    const qsizetype variant = word.indexOf(u'(');
    return variant > 0 ? word.left(variant) : word;
}

void append(QList<SpeechRecognizer::Piece> &pieces, const QString &word, double confidence)
{
    if (const auto text = spoken(word))
        pieces.append({pieces.isEmpty() ? *text : u' ' + *text, confidence});
}

} // namespace

PocketSphinxRecognizer::PocketSphinxRecognizer(ps_decoder_s *decoder, int sampleRate)
    : decoder_(decoder)
    , sampleRate_(sampleRate)
{
    cmn_t *cepstralMean = ps_get_feat(decoder_)->cmn_struct;
    speechMean_.resize(size_t(cepstralMean->veclen));
    cmn_live_get(cepstralMean, speechMean_.data());
    ps_start_utt(decoder_);
}

PocketSphinxRecognizer::~PocketSphinxRecognizer()
{
    ps_free(decoder_);
}

SpeechRecognizer::Factory PocketSphinxRecognizer::factory()
{
    return {[](const QString &locale) { return modelFolder(locale).has_value(); }, &PocketSphinxRecognizer::make};
}

std::optional<QString> PocketSphinxRecognizer::modelFolder(const QString &locale)
{
    if (locale.isEmpty())
        return std::nullopt;
    const QString models = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + u"/models/";
    QStringList candidates{models + locale, models + locale.section(u'-', 0, 0)};
    if (locale == u"en-US")
        candidates << debianEnglish;
    for (const QString &folder : candidates) {
        if (QFileInfo(folder).isDir())
            return folder;
    }
    return std::nullopt;
}

SpeechRecognizer::Made PocketSphinxRecognizer::make(const QString &locale)
{
    const auto folder = modelFolder(locale);
    if (!folder)
        return loadFailure(u"找不到 " + locale + u" 的模型");
    const auto parts = partsOf(*folder);
    if (const auto *problem = std::get_if<QString>(&parts))
        return *problem;
    const Model &model = std::get<Model>(parts);
    ps_decoder_t *decoder = loadsInChild(model) ? open(model) : nullptr;
    if (!decoder)
        return loadFailure(*folder + u" 里的模型文件无法读取");
    const int rate = int(cmd_ln_float32_r(ps_get_config(decoder), "-samprate"));
    return std::unique_ptr<SpeechRecognizer>(new PocketSphinxRecognizer(decoder, rate));
}

void PocketSphinxRecognizer::feed(std::span<const qint16> samples)
{
    std::scoped_lock lock(mutex_);
    if (finished_ || samples.empty() || queued_ + qsizetype(samples.size()) > qsizetype(queuedSecondsAtMost) * sampleRate_)
        return;
    queue_.emplace_back(samples.begin(), samples.end());
    queued_ += qsizetype(samples.size());
    arrived_.notify_one();
}

void PocketSphinxRecognizer::finish()
{
    std::scoped_lock lock(mutex_);
    finished_ = true;
    arrived_.notify_one();
}

std::optional<SpeechRecognizer::Result> PocketSphinxRecognizer::next(std::stop_token stop)
{
    while (ready_.empty() && !ended_) {
        std::vector<qint16> samples;
        {
            std::unique_lock lock(mutex_);
            arrived_.wait(lock, stop, [this] { return !queue_.empty() || finished_; });
            if (stop.stop_requested())
                return std::nullopt;
            if (!queue_.empty()) {
                samples = std::move(queue_.front());
                queue_.pop_front();
                queued_ -= qsizetype(samples.size());
            }
        }
        if (!samples.empty()) {
            decode(samples);
        } else {
            // Finished: what was being said when the sound ended is over too.
            if (speaking_)
                endUtterance();
            ended_ = true;
        }
    }
    if (ready_.empty())
        return std::nullopt;
    Result result = std::move(ready_.front());
    ready_.pop_front();
    return result;
}

void PocketSphinxRecognizer::decode(const std::vector<qint16> &samples)
{
    ps_process_raw(decoder_, samples.data(), samples.size(), FALSE, FALSE);
    const bool speaking = ps_get_in_speech(decoder_);
    if (speaking) {
        const char *hypothesis = ps_get_hyp(decoder_, nullptr);
        const QString text = QString::fromUtf8(hypothesis ? hypothesis : "");
        if (text != lastHypothesis_) {
            lastHypothesis_ = text;
            QList<Piece> pieces;
            for (const QString &word : text.split(u' ', Qt::SkipEmptyParts))
                append(pieces, word, 1.0);
            if (!pieces.isEmpty())
                ready_.push_back({pieces, false});
        }
    } else if (speaking_) {
        endUtterance();
    }
    speaking_ = speaking;
}

void PocketSphinxRecognizer::endUtterance()
{
    ps_end_utt(decoder_);
    const QList<Piece> pieces = finalPieces();
    // An utterance of room noise alone pulls the cepstral mean towards the noise and spoils the
    // next words (a class that begins with a minute of quiet): it gets the mean of speech back.
    cmn_t *cepstralMean = ps_get_feat(decoder_)->cmn_struct;
    if (pieces.isEmpty()) {
        cmn_live_set(cepstralMean, speechMean_.data());
    } else {
        cmn_live_get(cepstralMean, speechMean_.data());
        ready_.push_back({pieces, true});
    }
    lastHypothesis_.clear();
    ps_start_utt(decoder_);
}

QList<SpeechRecognizer::Piece> PocketSphinxRecognizer::finalPieces() const
{
    QList<Piece> pieces;
    logmath_t *logmath = ps_get_logmath(decoder_);
    for (ps_seg_t *segment = ps_seg_iter(decoder_); segment; segment = ps_seg_next(segment)) {
        int32 acoustic = 0, language = 0, backoff = 0;
        const double posterior = logmath_exp(logmath, ps_seg_prob(segment, &acoustic, &language, &backoff));
        append(pieces, QString::fromUtf8(ps_seg_word(segment)), std::clamp(posterior, 0.0, 1.0));
    }
    return pieces;
}
