#pragma once

// Speech recognition with PocketSphinx, one decoder per recogniser. A pause ends an utterance:
// the words heard so far come as volatile results while it lasts, and its best path comes as a
// final result with each word's posterior probability as its confidence.
//
// Models: a folder per locale under <application data>/models/<locale>/ (or just the language,
// "models/fr/"), holding an acoustic model folder (with its "mdef"), a pronunciation dictionary
// ("*.dict") and a language model ("*.lm.bin", "*.lm" or "*.lm.DMP"); US English falls back on
// the model Debian installs. Users add languages by adding folders.
//
// The recognising runs inside next(), on the reader's thread; feed() only queues the sound.

#include "platform/SpeechRecognizer.h"

#include <QStringList>

#include <condition_variable>
#include <deque>
#include <mutex>
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
    // Loads the model of a supported locale (about half a second), or says what is wrong with it.
    static Made make(const QString &locale);

    int sampleRate() const override { return sampleRate_; }
    void feed(std::span<const qint16> samples) override;
    void finish() override;
    std::optional<Result> next(std::stop_token stop) override;

private:
    PocketSphinxRecognizer(ps_decoder_s *decoder, int sampleRate);
    void decode(const std::vector<qint16> &samples);
    void endUtterance();
    QList<Piece> finalPieces() const;

    ps_decoder_s *const decoder_;
    const int sampleRate_;

    std::mutex mutex_;
    std::condition_variable_any arrived_;
    std::deque<std::vector<qint16>> queue_;   // guarded by mutex_
    qsizetype queued_ = 0;                   // samples in queue_
    bool finished_ = false;

    // The reader's own.
    std::deque<Result> ready_;
    QString lastHypothesis_;
    std::vector<float> speechMean_;   // the cepstral mean after the last utterance with words
    bool speaking_ = false;
    bool ended_ = false;
};
