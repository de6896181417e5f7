#pragma once

// Mono AAC in a fragmented MPEG-4 file (.m4a) through FFmpeg. The file carries its header up
// front and a fragment for about every second of sound, so a file cut off by a crash still
// plays up to its last whole fragment; close() finishes the file properly.
//
// A disk that fills up loses nothing at first: bytes the file refuses wait in memory (up to
// backlogLimit, about half an hour of speech) and go out as soon as space returns, so the file
// stays one contiguous, playable stream. Only beyond that limit does writing stop for good; what
// is on disk then still plays up to its last whole fragment.
//
// Not thread-safe: one thread opens, writes and closes (the recorder's own writer thread).

#include <QString>

#include <memory>
#include <vector>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;

class AacWriter final
{
public:
    AacWriter();
    ~AacWriter();   // closes
    AacWriter(const AacWriter &) = delete;
    AacWriter &operator=(const AacWriter &) = delete;
    AacWriter(AacWriter &&) = delete;
    AacWriter &operator=(AacWriter &&) = delete;

    // Creates the file; false when the encoder, the container or the file can't be made (the
    // encoder takes the usual rates from 7,350 to 96,000 Hz).
    bool open(const QString &path, int sampleRate, int bitRate);
    bool isOpen() const { return format_ != nullptr; }
    // Encodes mono samples at the rate given to open(); false once writing has stopped for good.
    bool write(const float *samples, qsizetype count);
    // Encodes what is pending and writes the end of the file; false when it couldn't all be
    // written (what is on disk still plays).
    bool close();

    static constexpr qsizetype backlogLimit = 16 * 1024 * 1024;
    // Bytes waiting for disk space; 0 while the disk takes everything.
    qsizetype backlog() const;
    // Writing stopped for good: the backlog outgrew its limit or the file failed otherwise.
    bool failed() const;

private:
    class Sink;
    bool encode(const AVFrame *frame);
    bool sendPending(qsizetype count);
    void release();

    struct FormatDeleter { void operator()(AVFormatContext *format) const; };
    struct CodecDeleter { void operator()(AVCodecContext *codec) const; };
    struct FrameDeleter { void operator()(AVFrame *frame) const; };
    struct PacketDeleter { void operator()(AVPacket *packet) const; };

    std::unique_ptr<Sink> sink_;   // before format_, which writes into it until it goes
    std::unique_ptr<AVFormatContext, FormatDeleter> format_;
    std::unique_ptr<AVCodecContext, CodecDeleter> codec_;
    std::unique_ptr<AVFrame, FrameDeleter> frame_;
    std::unique_ptr<AVPacket, PacketDeleter> packet_;
    std::vector<float> pending_;   // samples short of a whole encoder frame
    qint64 samplesSent_ = 0;
};
