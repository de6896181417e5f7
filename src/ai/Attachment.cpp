#include "ai/Attachment.h"

#include <QFile>
#include <QFileInfo>

#include <array>
#include <utility>

namespace {

using Row = std::pair<QStringView, QStringView>;

constexpr std::array<Row, 13> mediaTypes{{
    {u"png", u"image/png"},
    {u"jpg", u"image/jpeg"},
    {u"jpeg", u"image/jpeg"},
    {u"gif", u"image/gif"},
    {u"webp", u"image/webp"},
    {u"pdf", u"application/pdf"},
    {u"txt", u"text/plain"},
    {u"md", u"text/markdown"},
    {u"csv", u"text/csv"},
    {u"json", u"application/json"},
    {u"html", u"text/html"},
    {u"srt", u"text/plain"},
    {u"vtt", u"text/plain"},
}};

QString mediaTypeFor(const QString &extension)
{
    for (const auto &[known, mediaType] : mediaTypes) {
        if (known == extension)
            return mediaType.toString();
    }
    return {};
}

AttachmentError unreadable(const QString &name)
{
    return {QStringLiteral("读不了 ") + name};
}

} // namespace

bool Attachment::isImage() const
{
    return mediaType.startsWith(u"image/");
}

bool Attachment::isPDF() const
{
    return mediaType == u"application/pdf";
}

bool Attachment::isText() const
{
    return mediaType.startsWith(u"text/") || mediaType == u"application/json";
}

QString Attachment::base64() const
{
    return QString::fromLatin1(data.toBase64());
}

QString Attachment::inlineText() const
{
    return QStringLiteral("【文件：") + name + QStringLiteral("】\n") + QString::fromUtf8(data);
}

std::variant<Attachment, AttachmentError> Attachment::load(const QString &path)
{
    const QFileInfo info(path);
    const QString name = info.fileName();
    QFile file(path);
    // A folder opens like a file on Linux but has no bytes to send.
    if (info.isDir() || !file.open(QIODevice::ReadOnly))
        return unreadable(name);
    // One byte past the limit is enough to refuse, so a huge file is never read whole.
    QByteArray data = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return unreadable(name);
    if (data.size() > maxBytes)
        return AttachmentError{name + QStringLiteral(" 超过 10 MB，太大了")};
    const QString extension = info.suffix().toLower();
    const QString mediaType = mediaTypeFor(extension);
    if (mediaType.isEmpty())
        return AttachmentError{QStringLiteral("暂不支持 .") + extension
                               + QStringLiteral(" 文件，可以上传 PDF、图片或文本文件")};
    return Attachment{name, mediaType, std::move(data)};
}
