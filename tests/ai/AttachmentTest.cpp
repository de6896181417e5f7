#include "ai/Attachment.h"

#include "QtPrinters.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Attachment, LoadChecksReadableThenSizeThenExtension)
{
    QTemporaryDir folder;
    ASSERT_TRUE(QDir(folder.path()).mkdir(u"notes.md"_s));
    // The name, the bytes written (none when negative), and the media type or the refusal.
    const std::tuple<const char *, qsizetype, QString> rows[] = {
        {"scan.png", Attachment::maxBytes, u"image/png"_s},
        {"scan2.png", Attachment::maxBytes + 1, u"scan2.png 超过 10 MB，太大了"_s},
        {"movie.mkv", 20'000'000, u"movie.mkv 超过 10 MB，太大了"_s},
        {"missing.zip", -1, u"读不了 missing.zip"_s},
        {"notes.md", -1, u"读不了 notes.md"_s},
        {"README", 1, u"暂不支持 . 文件，可以上传 PDF、图片或文本文件"_s},
        {"Slides.KEY", 1, u"暂不支持 .key 文件，可以上传 PDF、图片或文本文件"_s},
        {"Week 3.PDF", 1, u"application/pdf"_s},
        {"a.JPEG", 1, u"image/jpeg"_s},
        {"c.srt", 1, u"text/plain"_s},
        {"f.Json", 1, u"application/json"_s},
        {"archive.tar.csv", 1, u"text/csv"_s},
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
            EXPECT_EQ(std::get<Attachment>(loaded),
                      (Attachment{QString::fromUtf8(name), result, QByteArray(size, 'a')}));
    }
    // Standard alphabet with + and /, padded, no line break after 76 characters.
    EXPECT_EQ((Attachment{{}, {}, QByteArray(100, '\xfb')}).base64(), u"+/v7"_s.repeated(33) + u"+w=="_s);
}
