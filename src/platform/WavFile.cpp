#include "platform/WavFile.h"

#include <QtEndian>

#include <cstring>

namespace {

constexpr quint16 formatPcm = 1;
constexpr quint16 formatFloat = 3;
constexpr quint16 formatExtensible = 0xFFFE;
// The part of a format chunk that is read: the plain fields and the extensible sub-format tag.
constexpr qint64 formatBytesRead = 26;
// What a microphone or a recording could be; a header beyond this is damaged or hostile, and its
// sizes would make the reader's buffers huge.
constexpr int channelsAtMost = 8;
constexpr int rateAtLeast = 8'000;
constexpr int rateAtMost = 192'000;

struct Chunk
{
    QByteArray id;
    quint32 size = 0;
};

std::optional<Chunk> readChunk(QFile &file)
{
    const QByteArray header = file.read(8);
    if (header.size() != 8)
        return std::nullopt;
    return Chunk{header.left(4), qFromLittleEndian<quint32>(header.constData() + 4)};
}

QString unreadable(const QString &path, const QString &reason)
{
    return u"无法读取音频文件 " + path + u"：" + reason;
}

} // namespace

WavFile::WavFile(const QString &path)
    : file_(path)
{
}

std::optional<QString> WavFile::open()
{
    if (!file_.open(QIODevice::ReadOnly))
        return unreadable(file_.fileName(), file_.errorString());
    if (auto problem = readHeader())
        return unreadable(file_.fileName(), *problem);
    return std::nullopt;
}

std::optional<QString> WavFile::readHeader()
{
    const QByteArray riff = file_.read(12);
    if (riff.size() != 12 || !riff.startsWith("RIFF") || riff.mid(8, 4) != "WAVE")
        return QStringLiteral("不是 WAV 文件");
    bool haveFormat = false;
    while (const auto chunk = readChunk(file_)) {
        // Sizes are believed only as far as the file really goes.
        const qint64 rest = file_.size() - file_.pos();
        if (chunk->id == "fmt ") {
            if (chunk->size < 16 || chunk->size > rest)
                return QStringLiteral("格式信息不完整");
            const QByteArray fmt = file_.read(std::min<qint64>(chunk->size, formatBytesRead));
            if (fmt.size() < 16)
                return QStringLiteral("格式信息不完整");
            quint16 tag = qFromLittleEndian<quint16>(fmt.constData());
            format_.channels = qFromLittleEndian<quint16>(fmt.constData() + 2);
            format_.sampleRate = int(qFromLittleEndian<quint32>(fmt.constData() + 4));
            const int bits = qFromLittleEndian<quint16>(fmt.constData() + 14);
            if (tag == formatExtensible && fmt.size() >= 26)
                tag = qFromLittleEndian<quint16>(fmt.constData() + 24);   // the sub-format GUID starts with it
            bytesPerSample_ = bits / 8;
            const bool integer = tag == formatPcm && bits % 8 == 0 && bits >= 8 && bits <= 32;
            const bool floating = tag == formatFloat && (bits == 32 || bits == 64);
            if (!integer && !floating)
                return QStringLiteral("不支持的采样格式（%1，%2 位）").arg(tag).arg(bits);
            encoding_ = floating ? Encoding::Float : Encoding::Integer;
            if (format_.channels < 1 || format_.channels > channelsAtMost)
                return QStringLiteral("声道数无效（%1）").arg(format_.channels);
            if (format_.sampleRate < rateAtLeast || format_.sampleRate > rateAtMost)
                return QStringLiteral("采样率无效（%1）").arg(qFromLittleEndian<quint32>(fmt.constData() + 4));
            haveFormat = true;
            file_.seek(file_.pos() - fmt.size() + chunk->size + (chunk->size & 1));
        } else if (chunk->id == "data") {
            if (!haveFormat)
                return QStringLiteral("缺少格式信息");
            // A writer that never finished leaves the size at 0 or beyond the end: read what is there.
            dataLeft_ = chunk->size == 0 || chunk->size > rest ? rest : chunk->size;
            return std::nullopt;
        } else if (chunk->size > rest || !file_.seek(file_.pos() + chunk->size + (chunk->size & 1))) {
            break;
        }
    }
    return QStringLiteral("找不到声音数据");
}

bool WavFile::read(qsizetype frames, std::vector<float> &samples)
{
    const qint64 frameBytes = qint64(bytesPerSample_) * format_.channels;
    const qint64 wanted = std::min<qint64>(dataLeft_ / frameBytes, frames) * frameBytes;
    raw_.resize(wanted);
    const qint64 got = wanted > 0 ? file_.read(raw_.data(), wanted) : 0;
    const qint64 whole = std::max<qint64>(got, 0) / frameBytes;
    dataLeft_ = got > 0 ? dataLeft_ - got : 0;
    samples.resize(size_t(whole * format_.channels));
    for (size_t i = 0; i < samples.size(); ++i)
        samples[i] = sample(raw_.constData() + qsizetype(i) * bytesPerSample_);
    return whole > 0;
}

float WavFile::sample(const char *bytes) const
{
    if (encoding_ == Encoding::Float) {
        if (bytesPerSample_ == 4)
            return qFromLittleEndian<float>(bytes);
        return float(qFromLittleEndian<double>(bytes));
    }
    if (bytesPerSample_ == 1)   // 8-bit WAV is unsigned
        return (float(quint8(bytes[0])) - 128.0f) / 128.0f;
    // Place the little-endian bytes at the top of a 32-bit word, so every width scales alike.
    quint32 word = 0;
    for (int i = 0; i < bytesPerSample_; ++i)
        word |= quint32(quint8(bytes[i])) << (8 * (4 - bytesPerSample_ + i));
    return float(qint32(word)) / 2147483648.0f;
}
