#pragma once

// Speech recognition with PocketSphinx, one decoder per recogniser. A pause ends an utterance:
// the words heard so far come as volatile results while it lasts, and its best path comes as a
// final result with each word's posterior probability, calibrated into the measured chance that
// the word is right, as its confidence.
//
// Models: a folder per locale under <application data>/models/<locale>/ (or just the language,
// "models/fr/"), holding an acoustic model folder (with its "mdef"), a pronunciation dictionary
// ("*.dict") and a language model ("*.lm.bin", "*.lm" or "*.lm.DMP"); US English falls back on
// the model Debian installs. Users add languages by adding folders. A model is first loaded by
// the quillet-model-check program (beside the executable, or the one of the build), so a damaged
// one fails with words instead of ending this process.
//
// The recognising runs inside next(), on the reader's thread; feed() only queues the sound.

#include "platform/SpeechRecognizer.h"

#include <QStringList>

#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <variant>
#include <vector>

struct ps_decoder_s;

class PocketSphinxRecognizer final : public SpeechRecognizer
{
public:
    ~PocketSphinxRecognizer() override;
    PocketSphinxRecognizer(const PocketSphinxRecognizer &) = delete;
    PocketSphinxRecognizer &operator=(const PocketSphinxRecognizer &) = delete;
    PocketSphinxRecognizer(PocketSphinxRecognizer &&) = delete;
    PocketSphinxRecognizer &operator=(PocketSphinxRecognizer &&) = delete;

    static Factory factory();
    // The model folder of the locale; none when the locale isn't supported.
    static std::optional<QString> modelFolder(const QString &locale);
    // Loads the model of a supported locale (about a second), or says what is wrong with it.
    static Made make(const QString &locale);

    // What the whole-file recogniser shares: a decoder of the locale's model, loaded the same way,
    // or what is wrong with the model; and the words of its last utterance read the same way, with
    // their first and last frames (frameRate() a second) counted from the first sound the decoder
    // was given, across utterances.
    struct DecoderDeleter { void operator()(ps_decoder_s *decoder) const; };
    using Decoder = std::unique_ptr<ps_decoder_s, DecoderDeleter>;
    struct Word
    {
        Piece piece;
        int firstFrame = 0;
        int lastFrame = 0;
    };
    static std::variant<Decoder, QString> load(const QString &locale);
    static QList<Word> words(ps_decoder_s *decoder);
    static int frameRate(ps_decoder_s *decoder);

    int sampleRate() const override { return sampleRate_; }
    bool feed(std::span<const qint16> samples) override;
    void waitForRoom() override;
    void finish() override;
    std::optional<Result> next(std::stop_token stop) override;
    std::optional<QString> problem() const override;

private:
    PocketSphinxRecognizer(ps_decoder_s *decoder, int sampleRate);
    void decode(const std::vector<qint16> &samples);
    // Ends the utterance with its final result and starts the next.
    void endUtterance();
    void fail(const QString &problem);
    QList<Piece> finalPieces() const;

    ps_decoder_s *const decoder_;
    const int sampleRate_;

    mutable std::mutex mutex_;   // guards the fields up to problem_
    std::condition_variable_any arrived_;
    std::condition_variable_any room_;
    std::deque<std::vector<qint16>> queue_;
    qsizetype queued_ = 0;   // samples in queue_
    bool finished_ = false;
    std::optional<QString> problem_;

    // The reader's own.
    std::deque<Result> ready_;
    QString lastHypothesis_;
    std::vector<float> speechMean_;   // the cepstral mean after the last utterance with words
    bool speaking_ = false;
    bool ended_ = false;
};
