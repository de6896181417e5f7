#include "platform/AacWriter.h"

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cstring>

namespace {

// FFmpeg reports to us through return values; its own chatter stays out of the terminal.
const bool quiet = [] {
    av_log_set_level(AV_LOG_ERROR);
    return true;
}();

} // namespace

void AacWriter::FormatDeleter::operator()(AVFormatContext *format) const
{
    if (format->pb)
        avio_closep(&format->pb);
    avformat_free_context(format);
}

void AacWriter::CodecDeleter::operator()(AVCodecContext *codec) const
{
    avcodec_free_context(&codec);
}

void AacWriter::FrameDeleter::operator()(AVFrame *frame) const
{
    av_frame_free(&frame);
}

void AacWriter::PacketDeleter::operator()(AVPacket *packet) const
{
    av_packet_free(&packet);
}

AacWriter::AacWriter() = default;

AacWriter::~AacWriter()
{
    close();
}

bool AacWriter::open(const QString &path, int sampleRate, int bitRate)
{
    close();
    const AVCodec *encoder = avcodec_find_encoder(AV_CODEC_ID_AAC);
    AVFormatContext *format = nullptr;
    if (!encoder || avformat_alloc_output_context2(&format, nullptr, "mp4", nullptr) < 0)
        return false;
    format_.reset(format);
    codec_.reset(avcodec_alloc_context3(encoder));
    frame_.reset(av_frame_alloc());
    packet_.reset(av_packet_alloc());
    AVStream *stream = avformat_new_stream(format, nullptr);
    if (!codec_ || !frame_ || !packet_ || !stream) {
        release();
        return false;
    }

    AVCodecContext *codec = codec_.get();
    codec->sample_fmt = AV_SAMPLE_FMT_FLTP;
    codec->sample_rate = sampleRate;
    codec->bit_rate = bitRate;
    codec->time_base = AVRational{1, sampleRate};
    av_channel_layout_default(&codec->ch_layout, 1);
    if (format->oformat->flags & AVFMT_GLOBALHEADER)
        codec->flags |= AV_CODEC_FLAG_GLOBAL_HEADER;
    stream->time_base = codec->time_base;

    // An empty index up front and a fragment every second: what is on disk always plays.
    AVDictionary *options = nullptr;
    av_dict_set(&options, "movflags", "empty_moov+default_base_moof", 0);
    av_dict_set(&options, "frag_duration", "1000000", 0);
    const bool ready = avcodec_open2(codec, encoder, nullptr) >= 0
        && avcodec_parameters_from_context(stream->codecpar, codec) >= 0
        && avio_open(&format->pb, QFile::encodeName(path).constData(), AVIO_FLAG_WRITE) >= 0
        && avformat_write_header(format, &options) >= 0;
    av_dict_free(&options);
    if (!ready) {
        release();
        return false;
    }

    frame_->format = codec->sample_fmt;
    frame_->sample_rate = sampleRate;
    frame_->nb_samples = codec->frame_size;
    if (av_channel_layout_copy(&frame_->ch_layout, &codec->ch_layout) < 0 || av_frame_get_buffer(frame_.get(), 0) < 0) {
        release();
        return false;
    }
    pending_.reserve(size_t(codec->frame_size));
    return true;
}

bool AacWriter::write(const float *samples, qsizetype count)
{
    if (!isOpen())
        return false;
    bool written = true;
    const size_t frameSize = size_t(codec_->frame_size);
    for (qsizetype used = 0; used < count;) {
        const qsizetype take = std::min<qsizetype>(count - used, qsizetype(frameSize - pending_.size()));
        pending_.insert(pending_.end(), samples + used, samples + used + take);
        used += take;
        if (pending_.size() == frameSize)
            written = sendPending(qsizetype(frameSize)) && written;
    }
    return written;
}

void AacWriter::close()
{
    if (!isOpen())
        return;
    // The encoder takes a short last frame; then it gives out what it holds back.
    if (!pending_.empty())
        sendPending(qsizetype(pending_.size()));
    // A fragment ends here, so the last one holds only the encoder's tail: players that take the
    // length from the index of fragments at the end of the file then get it nearly right.
    av_write_frame(format_.get(), nullptr);
    encode(nullptr);
    av_write_trailer(format_.get());
    release();
}

bool AacWriter::sendPending(qsizetype count)
{
    if (av_frame_make_writable(frame_.get()) < 0)
        return false;
    frame_->nb_samples = int(count);
    std::memcpy(frame_->data[0], pending_.data(), size_t(count) * sizeof(float));
    frame_->pts = samplesSent_;
    samplesSent_ += count;
    pending_.clear();
    return encode(frame_.get());
}

bool AacWriter::encode(const AVFrame *frame)
{
    if (avcodec_send_frame(codec_.get(), frame) < 0)
        return false;
    bool written = true;
    AVStream *stream = format_->streams[0];
    while (avcodec_receive_packet(codec_.get(), packet_.get()) >= 0) {
        av_packet_rescale_ts(packet_.get(), codec_->time_base, stream->time_base);
        packet_->stream_index = stream->index;
        written = av_write_frame(format_.get(), packet_.get()) >= 0 && written;
        av_packet_unref(packet_.get());
        // A finished fragment goes to the kernel at once, where a crash of ours can't lose it.
        avio_flush(format_->pb);
        written = format_->pb->error >= 0 && written;
    }
    return written;
}

void AacWriter::release()
{
    packet_.reset();
    frame_.reset();
    codec_.reset();
    format_.reset();
    pending_.clear();
    samplesSent_ = 0;
}
