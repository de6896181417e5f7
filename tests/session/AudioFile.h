#pragma once

// What FFmpeg finds when it decodes an audio file from start to end: for checking recordings.

#include <QString>

#include <optional>

struct AudioFile
{
    QString codec;
    int sampleRate = 0;
    int channels = 0;
    qint64 bitRate = 0;      // as the container states it
    double seconds = 0;      // decoded samples over the sample rate

    // No value when the file can't be opened or holds no audio stream.
    static std::optional<AudioFile> decode(const QString &path);
};
