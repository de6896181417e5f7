#pragma once

// The caption source that recognises the microphone on the device: one recogniser per language
// of the class runs on the same sound, the lecture language first. Each also reports words of
// its own language for speech in another; cleaned(), fits() and the final-line rules drop what
// is unlikely to have been said. CloudSource uses one for its live draft.
//
// Threads: start(), read(), draft(), problem() and takeFinals() come from the engine's thread,
// stop() from the coordinator, after start() has returned and the engine's loop has ended. The
// hub's audio thread only converts each buffer and queues it for the recognisers (waiting for
// room only when the buffer says it may: a file read as fast as possible). One reader thread per recogniser recognises and writes the
// lines and the draft under the source's lock, which is held only for list operations. stop()
// waits for the readers, at most one step of recognition. The hub must outlive the source.

#include "captions/CaptionSource.h"
#include "platform/MicHub.h"
#include "platform/SpeechRecognizer.h"

#include <QStringList>
#include <QUuid>

#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class MicSource final : public CaptionSource
{
public:
    // Final lines kept for a reader that stops reading.
    static constexpr qsizetype linesAtMost = 200;

    MicSource(QStringList localeIDs, MicHub &hub, SpeechRecognizer::Factory recognizers);
    ~MicSource() override;   // stops
    MicSource(const MicSource &) = delete;
    MicSource &operator=(const MicSource &) = delete;
    MicSource(MicSource &&) = delete;
    MicSource &operator=(MicSource &&) = delete;

    std::optional<QString> start() override;
    QString read() override;
    QString draft() override;
    void stop() override;
    // A recogniser's trouble, or how much sound was skipped because recognition fell behind the
    // microphone (its queue is bounded so the audio thread never waits).
    std::optional<QString> problem() override;

    // What start() says when there is no microphone to listen to.
    static QString noMicrophone();
    // Lets the hearer hear() the hub's buffers on the audio thread for as long as it lives (the
    // hub holds it weakly) and sets id; the problem worded for the user when the input won't start.
    template <typename Hearer>
    static std::optional<QString> listen(MicHub &hub, const std::shared_ptr<Hearer> &hearer, std::optional<QUuid> &id);

    // The final lines not read yet, unjoined; they are gone afterwards.
    QStringList takeFinals();

    // The believable runs of a result: words under the confidence threshold are dropped and
    // split the text; a secondary language needs three words in a row.
    static QString cleaned(const QList<SpeechRecognizer::Piece> &pieces, bool primary, bool primaryIsLatin);
    // Whether a text is really in the language of the locale identifier.
    static bool fits(const QString &text, const QString &language);
    // Whether the lecture language of the first locale is written in Latin letters: not Korean,
    // Japanese or Chinese, whose lectures keep a stray Latin word only when the recogniser is sure.
    static bool primaryIsLatin(const QString &firstLocale);

private:
    class Listening;
    struct Reading
    {
        QString locale;
        bool primary = false;
    };

    std::optional<QString> loadRecognizers(std::vector<std::shared_ptr<SpeechRecognizer>> &recognizers,
                                           QStringList &locales);
    void receive(const SpeechRecognizer::Result &result, const Reading &reading, bool primaryIsLatin);
    static bool passes(const QString &text, const Reading &reading);

    const QStringList localeIDs_;
    MicHub &hub_;
    const SpeechRecognizer::Factory recognizers_;

    std::mutex mutex_;   // guards lines_ and pending_
    QStringList lines_;
    QString pending_;

    std::optional<QUuid> micListener_;
    std::shared_ptr<Listening> listening_;   // the audio thread holds it weakly
    std::vector<std::jthread> readers_;
};

template <typename Hearer>
std::optional<QString> MicSource::listen(MicHub &hub, const std::shared_ptr<Hearer> &hearer, std::optional<QUuid> &id)
{
    try {
        id = hub.add([weak = std::weak_ptr<Hearer>(hearer)](const AudioBuffer &buffer) {
            if (const auto alive = weak.lock())
                alive->hear(buffer);
        });
    } catch (const MicHub::Error &error) {
        return u"麦克风启动失败：" + error.message();
    }
    return std::nullopt;
}
