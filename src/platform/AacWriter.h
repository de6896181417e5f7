#pragma once

// Mono AAC in a fragmented MPEG-4 file (.m4a) through FFmpeg. The file carries its header up
// front and a fragment for about every second of sound, so a file cut off by a crash still
// plays up to its last whole fragment; close() finishes the file properly.
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
    // Encodes mono samples at the rate given to open(); false when a write failed.
    bool write(const float *samples, qsizetype count);
    // Encodes what is pending and writes the end of the file.
    void close();

private:
    bool encode(const AVFrame *frame);
    bool sendPending(qsizetype count);
    void release();

    struct FormatDeleter { void operator()(AVFormatContext *format) const; };
    struct CodecDeleter { void operator()(AVCodecContext *codec) const; };
    struct FrameDeleter { void operator()(AVFrame *frame) const; };
    struct PacketDeleter { void operator()(AVPacket *packet) const; };

    std::unique_ptr<AVFormatContext, FormatDeleter> format_;
    std::unique_ptr<AVCodecContext, CodecDeleter> codec_;
    std::unique_ptr<AVFrame, FrameDeleter> frame_;
    std::unique_ptr<AVPacket, PacketDeleter> packet_;
    std::vector<float> pending_;   // samples short of a whole encoder frame
    qint64 samplesSent_ = 0;
};
