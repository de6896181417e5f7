#include "platform/AacWriter.h"

#include <QFile>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/opt.h>
}

#include <algorithm>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <unistd.h>

namespace {

// FFmpeg reports to us through return values; its own chatter stays out of the terminal.
const bool quiet = [] {
    av_log_set_level(AV_LOG_ERROR);
    return true;
}();

constexpr int ioBufferBytes = 32 * 1024;

} // namespace

// The file behind the muxer. FFmpeg gives up on a file for good after one failed write, so the
// muxer never sees one: refused bytes wait here and go out before the next ones.
class AacWriter::Sink final
{
public:
    static std::unique_ptr<Sink> open(const QString &path)
    {
        const int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
        if (fd < 0)
            return nullptr;
        auto sink = std::unique_ptr<Sink>(new Sink(fd));
        auto *buffer = static_cast<unsigned char *>(av_malloc(ioBufferBytes));
        if (buffer)
            sink->io_ = avio_alloc_context(buffer, ioBufferBytes, 1, sink.get(), nullptr, &Sink::written, nullptr);
        if (!sink->io_) {
            av_free(buffer);
            return nullptr;
        }
        return sink;
    }

    ~Sink()
    {
        if (io_)
            av_freep(&io_->buffer);
        avio_context_free(&io_);
        ::close(fd_);
    }
    Sink(const Sink &) = delete;
    Sink &operator=(const Sink &) = delete;
    Sink(Sink &&) = delete;
    Sink &operator=(Sink &&) = delete;

    AVIOContext *io() const { return io_; }
    qsizetype backlog() const { return backlog_.size(); }
    bool failed() const { return failed_; }

    // Writes out what waits, as far as the disk takes it.
    void drain()
    {
        qsizetype sent = 0;
        while (sent < backlog_.size()) {
            const ssize_t n = ::write(fd_, backlog_.constData() + sent, size_t(backlog_.size() - sent));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                break;
            sent += n;
        }
        backlog_.remove(0, sent);
    }

private:
    explicit Sink(int fd)
        : fd_(fd)
    {
    }

    static int written(void *opaque, uint8_t *data, int size)
    {
        auto *sink = static_cast<Sink *>(opaque);
        sink->backlog_.append(reinterpret_cast<const char *>(data), size);
        sink->drain();
        if (sink->backlog_.size() > backlogLimit) {
            sink->failed_ = true;
            return AVERROR(ENOSPC);
        }
        return size;
    }

    int fd_;
    AVIOContext *io_ = nullptr;
    QByteArray backlog_;
    bool failed_ = false;
};

void AacWriter::FormatDeleter::operator()(AVFormatContext *format) const
{
    // The file is the sink's (custom I/O): freeing the context leaves it alone.
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
    sink_ = Sink::open(path);
    if (sink_) {
        format->pb = sink_->io();
        format->flags |= AVFMT_FLAG_CUSTOM_IO;
    }
    const bool ready = sink_ && avcodec_open2(codec, encoder, nullptr) >= 0
        && avcodec_parameters_from_context(stream->codecpar, codec) >= 0
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
    if (!isOpen() || sink_->failed())
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

bool AacWriter::close()
{
    if (!isOpen())
        return true;
    // The encoder takes a short last frame; then it gives out what it holds back.
    bool whole = pending_.empty() || sendPending(qsizetype(pending_.size()));
    // A fragment ends here, so the last one holds only the encoder's tail: players that take the
    // length from the index of fragments at the end of the file then get it nearly right.
    whole = av_write_frame(format_.get(), nullptr) >= 0 && whole;
    whole = encode(nullptr) && whole;
    whole = av_write_trailer(format_.get()) >= 0 && whole;
    avio_flush(format_->pb);
    sink_->drain();
    whole = !sink_->failed() && sink_->backlog() == 0 && whole;
    release();
    return whole;
}

qsizetype AacWriter::backlog() const
{
    return sink_ ? sink_->backlog() : 0;
}

bool AacWriter::failed() const
{
    return sink_ && sink_->failed();
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
    sink_.reset();
    pending_.clear();
    samplesSent_ = 0;
}
