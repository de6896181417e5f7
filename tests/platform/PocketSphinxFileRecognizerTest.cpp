#include "platform/PocketSphinxFileRecognizer.h"

#include "AudioFiles.h"
#include "Files.h"
#include "QtPrinters.h"
#include "SpeechAudio.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// Every result of the file, each as its joined text; the problem when none can be made.
std::variant<QList<FileRecognizer::Result>, QString> recognise(const QString &path,
                                                                const QString &locale = u"en-US"_s)
{
    auto made = PocketSphinxFileRecognizer::make(path, locale);
    if (auto *problem = std::get_if<QString>(&made))
        return *problem;
    QList<FileRecognizer::Result> results;
    while (auto result = std::get<std::unique_ptr<FileRecognizer>>(made)->next(std::stop_token()))
        results << *result;
    return results;
}

QString textOf(const FileRecognizer::Result &result)
{
    QString text;
    for (const FileRecognizer::Run &run : result.runs)
        text += run.piece.text;
    return text;
}

// The WAV as AAC at 44.1 kHz; fragmented, as the recorder writes it, or with its index at the end.
enum class Index { Front, End };
QString aacOf(const QString &wav, const QString &m4a, Index index = Index::Front)
{
    const QStringList fragments{u"-movflags"_s, u"+frag_keyframe+empty_moov"_s};
    return QProcess::execute(u"ffmpeg"_s, QStringList{u"-v"_s, u"quiet"_s, u"-i"_s, wav, u"-ar"_s, u"44100"_s, u"-c:a"_s, u"aac"_s}
                                              + (index == Index::Front ? fragments : QStringList()) + QStringList{m4a})
                   == 0
               ? m4a
               : QString();
}

TEST(PocketSphinxFileRecognizerTest, GivesEachUtteranceOfAnAacFileWithWordTimes)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    const QString m4a = aacOf(speech->path, folder.filePath(u"录音.m4a"_s));
    ASSERT_FALSE(m4a.isEmpty());
    const auto got = recognise(m4a);
    ASSERT_TRUE(std::holds_alternative<QList<FileRecognizer::Result>>(got)) << std::get<QString>(got);
    const auto &results = std::get<QList<FileRecognizer::Result>>(got);
    ASSERT_EQ(results.size(), 3);
    for (qsizetype i = 0; i < 3; ++i) {
        SCOPED_TRACE(i);
        const FileRecognizer::Result &result = results[i];
        EXPECT_TRUE(textOf(result).contains(SpeechAudio::lecture()[i].toLower().chopped(1).section(u' ', -2)))
            << textOf(result).toStdString();
        EXPECT_NEAR(result.range.start, speech->sentenceStarts[i], 0.3);
        EXPECT_NEAR(result.range.end, speech->sentenceEnds[i], 0.3);
        double last = result.range.start;
        for (const FileRecognizer::Run &run : result.runs) {
            ASSERT_TRUE(run.time);
            EXPECT_GE(run.time->start, last);
            EXPECT_GT(run.time->end, run.time->start);
            EXPECT_GE(run.piece.confidence, 0.0);
            EXPECT_LE(run.piece.confidence, 1.0);
            last = run.time->start;
        }
    }
}
TEST(PocketSphinxFileRecognizerTest, BadFilesAreWordedOrEndEarly)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    const QString whole = aacOf(speech->path, folder.filePath(u"whole.m4a"_s));
    const QByteArray bytes = readFile(whole);
    const auto put = [&](const QString &name, const QByteArray &bytes) { return writeFile(folder.filePath(name), bytes); };
    const QString missing = folder.filePath(u"missing.m4a"_s);
    EXPECT_EQ(std::get<QString>(recognise(missing)), u"无法读取录音文件："_s + missing);
    const QString notSound = put(u"notes.m4a"_s, "# not a recording\n");
    EXPECT_EQ(std::get<QString>(recognise(notSound)), u"无法读取录音文件："_s + notSound);
    const QString indexAtEnd = aacOf(speech->path, folder.filePath(u"index.m4a"_s), Index::End);
    const QString lostIndex = put(u"lost.m4a"_s, readFile(indexAtEnd).left(50'000));
    EXPECT_EQ(std::get<QString>(recognise(lostIndex)), u"无法读取录音文件："_s + lostIndex);
    EXPECT_EQ(std::get<QString>(recognise(whole, u"fr-FR"_s)), u"加载语音识别模型失败，请检查模型文件夹：找不到 fr-FR 的模型"_s);

    // Cut in the middle of the second sentence, and with garbage after the first half: what
    // decodes is recognised, the rest is lost.
    const auto cut = recognise(put(u"cut.m4a"_s, bytes.left(bytes.size() / 2)));
    ASSERT_TRUE(std::holds_alternative<QList<FileRecognizer::Result>>(cut));
    EXPECT_GE(std::get<QList<FileRecognizer::Result>>(cut).size(), 1);
    EXPECT_LE(std::get<QList<FileRecognizer::Result>>(cut).size(), 2);
    const auto spoiled = recognise(put(u"spoiled.m4a"_s, bytes.left(bytes.size() / 2) + QByteArray(bytes.size() / 2, '\x55')));
    ASSERT_TRUE(std::holds_alternative<QList<FileRecognizer::Result>>(spoiled));
    EXPECT_GE(std::get<QList<FileRecognizer::Result>>(spoiled).size(), 1);
}

} // namespace
