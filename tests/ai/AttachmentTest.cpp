#include "ai/Attachment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class AttachmentTest : public ::testing::Test
{
protected:
    QString write(const QString &name, const QByteArray &data) const
    {
        const QString path = folder.filePath(name);
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(data);
        return path;
    }

    static QString error(const std::variant<Attachment, AttachmentError> &result)
    {
        return std::holds_alternative<AttachmentError>(result) ? std::get<AttachmentError>(result).message
                                                               : QStringLiteral("(loaded)");
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(AttachmentTest, SizeLimitIsDecimalAndChecksRunReadSizeExtension)
{
    const auto atLimit = Attachment::load(write(QStringLiteral("scan.png"), QByteArray(Attachment::maxBytes, 'a')));
    ASSERT_TRUE(std::holds_alternative<Attachment>(atLimit));
    EXPECT_EQ(std::get<Attachment>(atLimit).data.size(), 10'000'000);

    EXPECT_EQ(error(Attachment::load(write(QStringLiteral("scan2.png"), QByteArray(10'000'001, 'a')))),
              QStringLiteral("scan2.png 超过 10 MB，太大了"));
    EXPECT_EQ(error(Attachment::load(write(QStringLiteral("movie.mkv"), QByteArray(20'000'000, 'a')))),
              QStringLiteral("movie.mkv 超过 10 MB，太大了"));
    EXPECT_EQ(error(Attachment::load(folder.filePath(QStringLiteral("missing.zip")))), QStringLiteral("读不了 missing.zip"));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("notes.md")));
    EXPECT_EQ(error(Attachment::load(folder.filePath(QStringLiteral("notes.md")))), QStringLiteral("读不了 notes.md"));
}

TEST_F(AttachmentTest, TypesComeFromTheLowerCasedExtension)
{
    const auto pdf = Attachment::load(write(QStringLiteral("Week 3.PDF"), "%PDF-1.7"));
    ASSERT_TRUE(std::holds_alternative<Attachment>(pdf));
    EXPECT_EQ(std::get<Attachment>(pdf), (Attachment{QStringLiteral("Week 3.PDF"), QStringLiteral("application/pdf"), "%PDF-1.7"}));
    EXPECT_TRUE(std::get<Attachment>(pdf).isPDF());

    const std::pair<const char *, const char *> expected[] = {
        {"a.JPEG", "image/jpeg"}, {"b.webp", "image/webp"}, {"c.srt", "text/plain"}, {"d.vtt", "text/plain"},
        {"e.md", "text/markdown"}, {"f.Json", "application/json"}, {"archive.tar.csv", "text/csv"}};
    for (const auto &[name, mediaType] : expected) {
        const auto loaded = Attachment::load(write(QString::fromLatin1(name), "x"));
        ASSERT_TRUE(std::holds_alternative<Attachment>(loaded)) << name;
        EXPECT_EQ(std::get<Attachment>(loaded).mediaType, QString::fromLatin1(mediaType)) << name;
    }

    EXPECT_EQ(error(Attachment::load(write(QStringLiteral("README"), "x"))),
              QStringLiteral("暂不支持 . 文件，可以上传 PDF、图片或文本文件"));
    EXPECT_EQ(error(Attachment::load(write(QStringLiteral("Slides.KEY"), "x"))),
              QStringLiteral("暂不支持 .key 文件，可以上传 PDF、图片或文本文件"));
}

TEST_F(AttachmentTest, DerivedValues)
{
    const auto text = Attachment::load(write(QStringLiteral("课堂.txt"), "ok \xff\xfe end"));
    ASSERT_TRUE(std::holds_alternative<Attachment>(text));
    const Attachment &notes = std::get<Attachment>(text);
    EXPECT_TRUE(notes.inlineText().startsWith(QStringLiteral("【文件：课堂.txt】\nok ")));
    EXPECT_TRUE(notes.inlineText().endsWith(QStringLiteral(" end")));
    EXPECT_TRUE(notes.inlineText().contains(QChar(0xFFFD)));
    EXPECT_TRUE(notes.isText());
    EXPECT_FALSE(notes.isImage() || notes.isPDF());

    const Attachment json{QStringLiteral("d.json"), QStringLiteral("application/json"), "{}"};
    const Attachment image{QStringLiteral("p.gif"), QStringLiteral("image/gif"), QByteArray(100, '\xfb')};
    EXPECT_TRUE(json.isText());
    EXPECT_FALSE(json.isPDF());
    EXPECT_TRUE(image.isImage());
    EXPECT_FALSE(image.isText());
    // Standard alphabet (with + and /), padded, no line break after 76 characters.
    EXPECT_EQ(image.base64(), QStringLiteral("+/v7").repeated(33) + QStringLiteral("+w=="));
    EXPECT_EQ(Attachment{}.base64(), QString());
}
