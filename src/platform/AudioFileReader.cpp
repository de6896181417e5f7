#include "platform/AudioFileReader.h"

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswresample/swresample.h>
}

void AudioFileReader::FormatDeleter::operator()(AVFormatContext *format) const
{
    avformat_close_input(&format);
}

void AudioFileReader::CodecDeleter::operator()(AVCodecContext *codec) const
{
    avcodec_free_context(&codec);
}

void AudioFileReader::FrameDeleter::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

void AudioFileReader::PacketDeleter::operator()(AVPacket *packet) const
{
    av_packet_free(&packet);
}

void AudioFileReader::ResamplerDeleter::operator()(SwrContext *resampler) const
{
    swr_free(&resampler);
}

std::unique_ptr<AudioFileReader> AudioFileReader::open(const QString &path, int sampleRate)
{
    std::unique_ptr<AudioFileReader> reader(new AudioFileReader);
    AVFormatContext *format = nullptr;
    if (avformat_open_input(&format, QFile::encodeName(path).constData(), nullptr, nullptr) < 0)
        return nullptr;
    reader->format_.reset(format);
    const AVCodec *decoder = nullptr;
    if (avformat_find_stream_info(format, nullptr) < 0)
        return nullptr;
    reader->stream_ = av_find_best_stream(format, AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (reader->stream_ < 0 || !decoder)
        return nullptr;
    reader->codec_.reset(avcodec_alloc_context3(decoder));
    reader->frame_.reset(av_frame_alloc());
    reader->packet_.reset(av_packet_alloc());
    AVCodecContext *codec = reader->codec_.get();
    if (!codec || !reader->frame_ || !reader->packet_
        || avcodec_parameters_to_context(codec, format->streams[reader->stream_]->codecpar) < 0
        || avcodec_open2(codec, decoder, nullptr) < 0)
        return nullptr;

    AVChannelLayout mono;
    av_channel_layout_default(&mono, 1);
    SwrContext *resampler = nullptr;
    if (swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_S16, sampleRate, &codec->ch_layout, codec->sample_fmt,
                            codec->sample_rate, 0, nullptr)
        < 0)
        return nullptr;
    reader->resampler_.reset(resampler);
    if (swr_init(resampler) < 0)
        return nullptr;
    reader->sampleRate_ = sampleRate;
    return reader;
}

AudioFileReader::~AudioFileReader() = default;

bool AudioFileReader::read(std::vector<qint16> &samples)
{
    while (!ended_) {
        const int received = avcodec_receive_frame(codec_.get(), frame_.get());
        if (received == 0) {
            const bool converted = convert(frame_.get(), samples);
            av_frame_unref(frame_.get());
            if (converted)
                return true;
            continue;
        }
        if (received == AVERROR_EOF || draining_)
            return flush(samples);
        // The decoder wants more (or choked on a damaged packet): feed it the next packet of sound.
        if (av_read_frame(format_.get(), packet_.get()) < 0) {
            draining_ = true;
            avcodec_send_packet(codec_.get(), nullptr);
            continue;
        }
        if (packet_->stream_index == stream_)
            avcodec_send_packet(codec_.get(), packet_.get());
        av_packet_unref(packet_.get());
    }
    return false;
}

bool AudioFileReader::convert(const AVFrame *frame, std::vector<qint16> &samples)
{
    samples.resize(size_t(swr_get_out_samples(resampler_.get(), frame->nb_samples)));
    auto *out = reinterpret_cast<uint8_t *>(samples.data());
    const int converted = swr_convert(resampler_.get(), &out, int(samples.size()),
                                      const_cast<const uint8_t **>(frame->extended_data), frame->nb_samples);
    samples.resize(size_t(std::max(converted, 0)));
    return !samples.empty();
}

bool AudioFileReader::flush(std::vector<qint16> &samples)
{
    // What the resampler holds back for its filter comes out once, at the very end.
    ended_ = true;
    samples.resize(size_t(std::max(swr_get_out_samples(resampler_.get(), 0), 0)));
    auto *out = reinterpret_cast<uint8_t *>(samples.data());
    const int converted = samples.empty() ? 0 : swr_convert(resampler_.get(), &out, int(samples.size()), nullptr, 0);
    samples.resize(size_t(std::max(converted, 0)));
    return !samples.empty();
}
