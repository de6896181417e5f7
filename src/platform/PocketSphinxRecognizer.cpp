#include "platform/PocketSphinxRecognizer.h"

#include "platform/PocketSphinxModel.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <pocketsphinx.h>
#include <sphinxbase/cmn.h>
#include <sphinxbase/feat.h>

#include <array>
#include <cstring>

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

static_assert(std::is_same_v<mfcc_t, float>, "the saved cepstral mean is kept as floats");

namespace {

// Live recognition that falls this far behind (a stalled machine) costs the newest sound, not
// memory: about 10 MB at 16 kHz.
constexpr int queuedSecondsAtMost = 300;
// A file read as fast as it is taken waits while this much sound is queued.
constexpr int roomSecondsAtLeast = 5;

const QString debianEnglish = QStringLiteral("/usr/share/pocketsphinx/model/en-us");

// Loading Debian's model takes about half a second; a busy machine may take several times that.
constexpr int checkSecondsAtMost = 20;

// The chance that a final word is right, given its PocketSphinx posterior. Measured on some 1,100
// words of four flite voices and Debian's recordings of a human reader, aligned with their
// scripts: below about 0.4 the posterior no longer tells right words from misheard ones (about
// half are right at every value), so those words keep the lecture language's 0.45; above, the
// share of right words rises to 0.97.
double confidence(double posterior)
{
    static constexpr std::array<std::pair<double, double>, 6> measured{
        {{0.0, 0.46}, {0.4, 0.5}, {0.55, 0.6}, {0.7, 0.72}, {0.875, 0.85}, {1.0, 0.97}}};
    posterior = std::clamp(posterior, 0.0, 1.0);
    for (size_t i = 1; i < measured.size(); ++i) {
        const auto [fromPosterior, fromShare] = measured[i - 1];
        const auto [toPosterior, toShare] = measured[i];
        if (posterior <= toPosterior)
            return fromShare
                   + (toShare - fromShare) * (posterior - fromPosterior) / (toPosterior - fromPosterior);
    }
    return measured.back().second;
}

// The check program beside the executable (as installed), else the one of the build.
QString checkProgram()
{
    QStringList candidates;
    if (QCoreApplication::instance())
        candidates << QCoreApplication::applicationDirPath() + u"/quillet-model-check";
    candidates << QStringLiteral(QUILLET_MODEL_CHECK);
    for (const QString &candidate : std::as_const(candidates)) {
        if (QFileInfo(candidate).isExecutable())
            return candidate;
    }
    return {};
}

// Loads the model in the check program, a process of its own started with exec (nothing of this
// multi-threaded process is copied into it), and waits a bounded time; the problem if it fails.
std::optional<QString> checkElsewhere(const PocketSphinxModel &model, const QString &folder)
{
    const QString program = checkProgram();
    if (program.isEmpty())
        return PocketSphinxModel::failure(u"找不到模型检查程序 quillet-model-check，请重新安装 Quillet"_s);
    std::vector<QByteArray> arguments{QFile::encodeName(program)};
    for (const QString &argument : model.arguments())
        arguments.push_back(QFile::encodeName(argument));
    std::vector<char *> argv;
    for (QByteArray &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int spawned = posix_spawn(&child, argv.front(), &quiet, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&quiet);
    if (spawned != 0)
        return PocketSphinxModel::failure(u"无法启动模型检查程序："_s
                                          + QString::fromLocal8Bit(std::strerror(spawned)));

    // A descriptor that becomes readable when the child ends, so poll() bounds the wait.
    const int exited = int(syscall(SYS_pidfd_open, child, 0));
    pollfd watch{exited, POLLIN, 0};
    const bool inTime = exited >= 0 && poll(&watch, 1, checkSecondsAtMost * 1000) == 1;
    if (!inTime)
        kill(child, SIGKILL);
    if (exited >= 0)
        close(exited);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!inTime)
        return PocketSphinxModel::failure(folder
                                          + u" 里的模型加载超时（超过 %1 秒）"_s.arg(checkSecondsAtMost));
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return PocketSphinxModel::failure(folder + u" 里的模型文件无法读取");
    return std::nullopt;
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
    auto loaded = load(locale);
    if (auto *problem = std::get_if<QString>(&loaded))
        return std::move(*problem);
    ps_decoder_t *decoder = std::get<Decoder>(loaded).release();
    const int rate = int(cmd_ln_float32_r(ps_get_config(decoder), "-samprate"));
    return std::unique_ptr<SpeechRecognizer>(new PocketSphinxRecognizer(decoder, rate));
}

void PocketSphinxRecognizer::DecoderDeleter::operator()(ps_decoder_s *decoder) const
{
    ps_free(decoder);
}

std::variant<PocketSphinxRecognizer::Decoder, QString> PocketSphinxRecognizer::load(const QString &locale)
{
    const auto folder = modelFolder(locale);
    if (!folder)
        return PocketSphinxModel::failure(u"找不到 " + locale + u" 的模型");
    const auto parts = PocketSphinxModel::in(*folder);
    if (const auto *problem = std::get_if<QString>(&parts))
        return *problem;
    const PocketSphinxModel &model = std::get<PocketSphinxModel>(parts);
    if (auto problem = checkElsewhere(model, *folder))
        return *problem;
    Decoder decoder(model.open());
    if (!decoder)
        return PocketSphinxModel::failure(*folder + u" 里的模型文件无法读取");
    if (ps_start_utt(decoder.get()) < 0)
        return PocketSphinxModel::failure(*folder + u" 里的模型无法开始识别");
    return decoder;
}

QList<PocketSphinxRecognizer::Word> PocketSphinxRecognizer::words(ps_decoder_s *decoder)
{
    QList<Word> words;
    logmath_t *logmath = ps_get_logmath(decoder);
    for (ps_seg_t *segment = ps_seg_iter(decoder); segment; segment = ps_seg_next(segment)) {
        const auto text = spoken(QString::fromUtf8(ps_seg_word(segment)));
        if (!text)
            continue;
        int32 acoustic = 0, language = 0, backoff = 0;
        const double posterior = logmath_exp(logmath, ps_seg_prob(segment, &acoustic, &language, &backoff));
        Word word{{words.isEmpty() ? *text : u' ' + *text, confidence(posterior)}};
        ps_seg_frames(segment, &word.firstFrame, &word.lastFrame);
        words.append(word);
    }
    return words;
}

int PocketSphinxRecognizer::frameRate(ps_decoder_s *decoder)
{
    return int(cmd_ln_int32_r(ps_get_config(decoder), "-frate"));
}

bool PocketSphinxRecognizer::feed(std::span<const qint16> samples)
{
    std::scoped_lock lock(mutex_);
    if (finished_ || samples.empty())
        return true;
    if (queued_ + qsizetype(samples.size()) > qsizetype(queuedSecondsAtMost) * sampleRate_)
        return false;
    queue_.emplace_back(samples.begin(), samples.end());
    queued_ += qsizetype(samples.size());
    arrived_.notify_one();
    return true;
}

void PocketSphinxRecognizer::waitForRoom()
{
    std::unique_lock lock(mutex_);
    room_.wait(lock, [this] { return finished_ || queued_ < qsizetype(roomSecondsAtLeast) * sampleRate_; });
}

void PocketSphinxRecognizer::finish()
{
    std::scoped_lock lock(mutex_);
    finished_ = true;
    arrived_.notify_one();
    room_.notify_all();
}

std::optional<QString> PocketSphinxRecognizer::problem() const
{
    std::scoped_lock lock(mutex_);
    return problem_;
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
                room_.notify_all();
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
    if (ps_process_raw(decoder_, samples.data(), samples.size(), FALSE, FALSE) < 0) {
        // The utterance is lost; a fresh one may still work.
        fail(QStringLiteral("本机语音识别出错：有一段声音没能识别"));
        endUtterance();
        speaking_ = false;
        return;
    }
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
    const bool ended = ps_end_utt(decoder_) >= 0;
    if (!ended)
        fail(QStringLiteral("本机语音识别出错：有一段声音没能识别"));
    const QList<Piece> pieces = ended ? finalPieces() : QList<Piece>();
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
    if (ps_start_utt(decoder_) < 0) {
        fail(QStringLiteral("本机语音识别出错，已停止识别：请重新开始上课"));
        ended_ = true;
        finish();
    }
}

void PocketSphinxRecognizer::fail(const QString &problem)
{
    std::scoped_lock lock(mutex_);
    problem_ = problem;
}

QList<SpeechRecognizer::Piece> PocketSphinxRecognizer::finalPieces() const
{
    QList<Piece> pieces;
    for (const Word &word : words(decoder_))
        pieces.append(word.piece);
    return pieces;
}
