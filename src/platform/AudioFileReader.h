#pragma once

// Reads a sound file (the class's AAC .m4a, or anything else FFmpeg decodes) as 16-bit mono at a
// chosen rate, a block at a time, so an hour of sound never sits in memory. Damaged data past
// which nothing decodes ends the sound early rather than failing it: a recording cut off by a
// crash gives what it holds.
//
// Used by one thread at a time; the reader owns its FFmpeg state.

#include <QString>

#include <memory>
#include <vector>

struct AVCodecContext;
struct AVFormatContext;
struct AVFrame;
struct AVPacket;
struct SwrContext;

class AudioFileReader final
{
public:
    // None when the file is missing or holds no sound FFmpeg can decode.
    [[nodiscard]] static std::unique_ptr<AudioFileReader> open(const QString &path, int sampleRate);
    ~AudioFileReader();
    AudioFileReader(const AudioFileReader &) = delete;
    AudioFileReader &operator=(const AudioFileReader &) = delete;
    AudioFileReader(AudioFileReader &&) = delete;
    AudioFileReader &operator=(AudioFileReader &&) = delete;

    // The next block, some tens of milliseconds, into `samples`; false at the end of the sound.
    bool read(std::vector<qint16> &samples);

private:
    AudioFileReader() = default;
    bool convert(const AVFrame *frame, std::vector<qint16> &samples);
    bool flush(std::vector<qint16> &samples);

    struct FormatDeleter { void operator()(AVFormatContext *format) const; };
    struct CodecDeleter { void operator()(AVCodecContext *codec) const; };
    struct FrameDeleter { void operator()(AVFrame *frame) const; };
    struct PacketDeleter { void operator()(AVPacket *packet) const; };
    struct ResamplerDeleter { void operator()(SwrContext *resampler) const; };

    std::unique_ptr<AVFormatContext, FormatDeleter> format_;
    std::unique_ptr<AVCodecContext, CodecDeleter> codec_;
    std::unique_ptr<AVFrame, FrameDeleter> frame_;
    std::unique_ptr<AVPacket, PacketDeleter> packet_;
    std::unique_ptr<SwrContext, ResamplerDeleter> resampler_;
    int stream_ = -1;
    int sampleRate_ = 0;
    bool draining_ = false;   // the file is read to its end; the decoder gives what it holds
    bool ended_ = false;
};
