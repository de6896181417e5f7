#include "ai/Attachment.h"

#include "QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(Attachment, LoadChecksReadableThenSizeThenExtension)
{
    QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("notes.md")));
    // The name, the bytes written (none when negative), and the media type or the refusal.
    const std::tuple<const char *, qsizetype, QString> rows[] = {
        {"scan.png", Attachment::maxBytes, QStringLiteral("image/png")},
        {"scan2.png", Attachment::maxBytes + 1, QStringLiteral("scan2.png 超过 10 MB，太大了")},
        {"movie.mkv", 20'000'000, QStringLiteral("movie.mkv 超过 10 MB，太大了")},
        {"missing.zip", -1, QStringLiteral("读不了 missing.zip")},
        {"notes.md", -1, QStringLiteral("读不了 notes.md")},
        {"README", 1, QStringLiteral("暂不支持 . 文件，可以上传 PDF、图片或文本文件")},
        {"Slides.KEY", 1, QStringLiteral("暂不支持 .key 文件，可以上传 PDF、图片或文本文件")},
        {"Week 3.PDF", 1, QStringLiteral("application/pdf")},
        {"a.JPEG", 1, QStringLiteral("image/jpeg")},
        {"p.gif", 1, QStringLiteral("image/gif")},
        {"c.srt", 1, QStringLiteral("text/plain")},
        {"f.Json", 1, QStringLiteral("application/json")},
        {"archive.tar.csv", 1, QStringLiteral("text/csv")},
    };
    for (const auto &[name, size, result] : rows) {
        SCOPED_TRACE(name);
        const QString path = folder.filePath(QString::fromUtf8(name));
        if (size >= 0) {
            QFile file(path);
            ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(QByteArray(size, 'a')) == size);
        }
        const auto loaded = Attachment::load(path);
        if (const auto *error = std::get_if<AttachmentError>(&loaded))
            EXPECT_EQ(error->message, result);
        else
            EXPECT_EQ(std::get<Attachment>(loaded), (Attachment{QString::fromUtf8(name), result, QByteArray(size, 'a')}));
    }
    // Standard alphabet with + and /, padded, no line break after 76 characters.
    EXPECT_EQ((Attachment{{}, {}, QByteArray(100, '\xfb')}).base64(),
              QStringLiteral("+/v7").repeated(33) + QStringLiteral("+w=="));
}
