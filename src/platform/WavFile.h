#pragma once

// Reads the samples of a WAV file as interleaved floats, a block at a time, so an hour of sound
// never sits in memory. Integer PCM of 8, 16, 24 or 32 bits and float of 32 or 64 bits, plain or
// in the extensible header, 1 to 8 channels at 8 to 192 kHz; every size in the header is bounded
// by the file's real length, so a damaged file is a worded failure, never a huge buffer. Used by
// one thread at a time.

#include "platform/AudioBuffer.h"

#include <QFile>
#include <QString>

#include <optional>
#include <vector>

class WavFile final
{
public:
    explicit WavFile(const QString &path);

    // No value when the header was read; otherwise the reason, worded for the user.
    std::optional<QString> open();
    AudioFormat format() const { return format_; }
    // Up to `frames` frames into `samples` (resized to what was read); false at the end.
    bool read(qsizetype frames, std::vector<float> &samples);

private:
    enum class Encoding { Integer, Float };
    std::optional<QString> readHeader();
    float sample(const char *bytes) const;

    QFile file_;
    AudioFormat format_;
    Encoding encoding_ = Encoding::Integer;
    int bytesPerSample_ = 0;
    qint64 dataLeft_ = 0;
    QByteArray raw_;
};
