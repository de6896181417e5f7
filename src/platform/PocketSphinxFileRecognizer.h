#pragma once

// The whole-file recogniser on PocketSphinx: the file is decoded with FFmpeg and streamed through
// one decoder in blocks; a pause ends an utterance, and each utterance with words is one final
// result, each word a run with its posterior probability as confidence and its time range from
// the decoder's word segmentation. Models are found exactly as the live recogniser finds them.
//
// next() does the decoding on the caller's thread and checks for stop between blocks.

#include "platform/AudioFileReader.h"
#include "platform/FileRecognizer.h"
#include "platform/PocketSphinxRecognizer.h"

#include <vector>

class PocketSphinxFileRecognizer final : public FileRecognizer
{
public:
    ~PocketSphinxFileRecognizer() override;
    PocketSphinxFileRecognizer(const PocketSphinxFileRecognizer &) = delete;
    PocketSphinxFileRecognizer &operator=(const PocketSphinxFileRecognizer &) = delete;
    PocketSphinxFileRecognizer(PocketSphinxFileRecognizer &&) = delete;
    PocketSphinxFileRecognizer &operator=(PocketSphinxFileRecognizer &&) = delete;

    static Factory factory();
    // Loads the locale's model and opens the file, or says which of the two failed.
    static Made make(const QString &path, const QString &locale);

    std::optional<Result> next(std::stop_token stop) override;

private:
    PocketSphinxFileRecognizer(PocketSphinxRecognizer::Decoder decoder, std::unique_ptr<AudioFileReader> audio);
    std::optional<Result> endUtterance();

    const PocketSphinxRecognizer::Decoder decoder_;
    const std::unique_ptr<AudioFileReader> audio_;
    const int frameRate_;   // the decoder counts frames from the start of the file
    std::vector<qint16> block_;
    bool speaking_ = false;
    bool ended_ = false;
};
