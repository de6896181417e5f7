#include "platform/PocketSphinxFileRecognizer.h"

#include <pocketsphinx.h>

PocketSphinxFileRecognizer::PocketSphinxFileRecognizer(PocketSphinxRecognizer::Decoder decoder,
                                                       std::unique_ptr<AudioFileReader> audio)
    : decoder_(std::move(decoder))
    , audio_(std::move(audio))
    , frameRate_(PocketSphinxRecognizer::frameRate(decoder_.get()))
{
}

PocketSphinxFileRecognizer::~PocketSphinxFileRecognizer() = default;

FileRecognizer::Factory PocketSphinxFileRecognizer::factory()
{
    return {[](const QString &locale) { return PocketSphinxRecognizer::modelFolder(locale).has_value(); },
            &PocketSphinxFileRecognizer::make};
}

FileRecognizer::Made PocketSphinxFileRecognizer::make(const QString &path, const QString &locale)
{
    auto loaded = PocketSphinxRecognizer::load(locale);
    if (auto *problem = std::get_if<QString>(&loaded))
        return std::move(*problem);
    auto &decoder = std::get<PocketSphinxRecognizer::Decoder>(loaded);
    const int rate = int(cmd_ln_float32_r(ps_get_config(decoder.get()), "-samprate"));
    auto audio = AudioFileReader::open(path, rate);
    if (!audio)
        return u"无法读取录音文件：" + path;
    return std::unique_ptr<FileRecognizer>(new PocketSphinxFileRecognizer(std::move(decoder), std::move(audio)));
}

std::optional<FileRecognizer::Result> PocketSphinxFileRecognizer::next(std::stop_token stop)
{
    while (!ended_ && !stop.stop_requested()) {
        if (!audio_->read(block_)) {
            // What was being said when the sound ended is over too.
            ended_ = true;
            return endUtterance();
        }
        // A block the decoder refuses ends the utterance with what it has.
        const bool decoded = ps_process_raw(decoder_.get(), block_.data(), block_.size(), FALSE, FALSE) >= 0;
        const bool speaking = decoded && ps_get_in_speech(decoder_.get());
        const bool over = (speaking_ && !speaking) || !decoded;
        speaking_ = speaking;
        if (over) {
            if (auto result = endUtterance())
                return result;
        }
    }
    return std::nullopt;
}

std::optional<FileRecognizer::Result> PocketSphinxFileRecognizer::endUtterance()
{
    const bool ended = ps_end_utt(decoder_.get()) >= 0;
    const QList<PocketSphinxRecognizer::Word> words = ended ? PocketSphinxRecognizer::words(decoder_.get())
                                                            : QList<PocketSphinxRecognizer::Word>();
    // A decoder that can't start again has nothing more to give.
    if (ps_start_utt(decoder_.get()) < 0)
        ended_ = true;
    if (words.isEmpty())
        return std::nullopt;
    Result result;
    for (const PocketSphinxRecognizer::Word &word : words) {
        const TimeRange time{double(word.firstFrame) / frameRate_, double(word.lastFrame + 1) / frameRate_};
        result.runs.append({word.piece, time});
    }
    result.range = {result.runs.front().time->start, result.runs.back().time->end};
    return result;
}
