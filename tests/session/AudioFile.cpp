#include "AudioFile.h"

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
}

#include <memory>

namespace {

struct FormatCloser
{
    void operator()(AVFormatContext *format) const { avformat_close_input(&format); }
};
struct CodecFreer
{
    void operator()(AVCodecContext *codec) const { avcodec_free_context(&codec); }
};
struct FrameFreer
{
    void operator()(AVFrame *frame) const { av_frame_free(&frame); }
};
struct PacketFreer
{
    void operator()(AVPacket *packet) const { av_packet_free(&packet); }
};

qint64 receiveSamples(AVCodecContext *codec, AVFrame *frame)
{
    qint64 samples = 0;
    while (avcodec_receive_frame(codec, frame) >= 0)
        samples += frame->nb_samples;
    return samples;
}

} // namespace

std::optional<AudioFile> AudioFile::decode(const QString &path)
{
    AVFormatContext *opened = nullptr;
    if (avformat_open_input(&opened, QFile::encodeName(path).constData(), nullptr, nullptr) < 0)
        return std::nullopt;
    const std::unique_ptr<AVFormatContext, FormatCloser> format(opened);
    const AVCodec *decoder = nullptr;
    if (avformat_find_stream_info(format.get(), nullptr) < 0)
        return std::nullopt;
    const int index = av_find_best_stream(format.get(), AVMEDIA_TYPE_AUDIO, -1, -1, &decoder, 0);
    if (index < 0)
        return std::nullopt;
    const std::unique_ptr<AVCodecContext, CodecFreer> codec(avcodec_alloc_context3(decoder));
    const AVCodecParameters *parameters = format->streams[index]->codecpar;
    if (avcodec_parameters_to_context(codec.get(), parameters) < 0 || avcodec_open2(codec.get(), decoder, nullptr) < 0)
        return std::nullopt;

    const std::unique_ptr<AVFrame, FrameFreer> frame(av_frame_alloc());
    const std::unique_ptr<AVPacket, PacketFreer> packet(av_packet_alloc());
    qint64 samples = 0;
    while (av_read_frame(format.get(), packet.get()) >= 0) {
        if (packet->stream_index == index && avcodec_send_packet(codec.get(), packet.get()) >= 0)
            samples += receiveSamples(codec.get(), frame.get());
        av_packet_unref(packet.get());
    }
    avcodec_send_packet(codec.get(), nullptr);
    samples += receiveSamples(codec.get(), frame.get());

    AudioFile file;
    file.codec = QString::fromLatin1(decoder->name);
    file.sampleRate = parameters->sample_rate;
    file.channels = parameters->ch_layout.nb_channels;
    file.bitRate = parameters->bit_rate;
    file.seconds = file.sampleRate > 0 ? double(samples) / file.sampleRate : 0;
    return file;
}
