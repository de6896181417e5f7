#include "platform/AudioConverter.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/WavFile.h"

#include "QtPrinters.h"
#include "SpeechAudio.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

namespace {

using Result = SpeechRecognizer::Result;

std::unique_ptr<SpeechRecognizer> english()
{
    auto made = PocketSphinxRecognizer::make(QStringLiteral("en-US"));
    if (auto *problem = std::get_if<QString>(&made))
        ADD_FAILURE() << problem->toStdString();
    return std::get_if<std::unique_ptr<SpeechRecognizer>>(&made) ? std::move(std::get<0>(made)) : nullptr;
}

// Feeds the whole file in 50 ms buffers, ends the sound and collects every result.
QList<Result> recognise(SpeechRecognizer &recognizer, const QString &path)
{
    WavFile file(path);
    EXPECT_EQ(file.open(), std::nullopt);
    const auto converter = AudioConverter::create(file.format(), recognizer.sampleRate());
    std::vector<float> block;
    while (file.read(file.format().sampleRate / 20, block))
        recognizer.feed(converter->convert({block.data(), qsizetype(block.size()) / file.format().channels, file.format()}));
    recognizer.finish();
    QList<Result> results;
    while (auto result = recognizer.next(std::stop_token()))
        results << *result;
    return results;
}

QString textOf(const Result &result)
{
    QString text;
    for (const SpeechRecognizer::Piece &piece : result.pieces)
        text += piece.text;
    return text;
}

QStringList finals(const QList<Result> &results)
{
    QStringList texts;
    for (const Result &result : results) {
        if (result.isFinal)
            texts << textOf(result);
    }
    return texts;
}

QString modelsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + u"/models/";
}

TEST(PocketSphinxRecognizerTest, GivesVolatileWordsThenAFinalSentencePerUtterance)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    const auto recognizer = english();
    ASSERT_TRUE(recognizer);
    EXPECT_EQ(recognizer->sampleRate(), 16'000);

    const QList<Result> results = recognise(*recognizer, speech->path);
    const QStringList said = finals(results);
    ASSERT_EQ(said.size(), 3) << said.join(u" | ").toStdString();
    EXPECT_TRUE(said[0].contains(u"read chapter seven before the exam")) << said[0].toStdString();
    EXPECT_TRUE(said[1].contains(u"chemical energy")) << said[1].toStdString();
    EXPECT_TRUE(said[2].contains(u"chapters three to five")) << said[2].toStdString();

    bool volatileSinceFinal = false;
    for (const Result &result : results) {
        if (result.isFinal) {
            EXPECT_TRUE(volatileSinceFinal) << "every sentence shows words before it is final";
        }
        volatileSinceFinal = !result.isFinal;
        ASSERT_FALSE(result.pieces.isEmpty());
        EXPECT_FALSE(result.pieces.front().text.startsWith(u' '));
        for (qsizetype i = 0; i < result.pieces.size(); ++i) {
            const SpeechRecognizer::Piece &piece = result.pieces[i];
            EXPECT_GE(piece.confidence, 0.0);
            EXPECT_LE(piece.confidence, 1.0);
            EXPECT_FALSE(piece.text.contains(u'(') || piece.text.contains(u'<') || piece.text.contains(u'['))
                << "no word variants or fillers: " << piece.text.toStdString();
            if (i > 0) {
                EXPECT_TRUE(piece.text.startsWith(u' '));
            }
        }
    }
    EXPECT_FALSE(results.front().isFinal);
    EXPECT_FALSE(recognizer->next(std::stop_token())) << "ended sound stays ended";
}

TEST(PocketSphinxRecognizerTest, StopEndsAWaitingReader)
{
    const auto recognizer = english();
    ASSERT_TRUE(recognizer);
    std::optional<Result> got = Result{};
    std::jthread reader([&](std::stop_token stop) { got = recognizer->next(stop); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    reader.request_stop();
    reader.join();
    EXPECT_FALSE(got);
}

TEST(PocketSphinxRecognizerTest, ModelFoldersAreFoundByLocaleAndBadOnesAreWorded)
{
    const QString models = modelsFolder();
    const QString debian = QStringLiteral("/usr/share/pocketsphinx/model/en-us");
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(QStringLiteral("en-US")), debian);
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(QStringLiteral("fr-FR")), std::nullopt);
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(QString()), std::nullopt);
    EXPECT_FALSE(PocketSphinxRecognizer::factory().supports(QStringLiteral("ko-KR")));
    EXPECT_TRUE(PocketSphinxRecognizer::factory().supports(QStringLiteral("en-US")));

    const auto problem = [](const QString &locale) {
        auto made = PocketSphinxRecognizer::make(locale);
        return std::get_if<QString>(&made) ? std::get<QString>(made) : QString();
    };
    EXPECT_EQ(problem(QStringLiteral("fr-FR")), u"加载语音识别模型失败，请检查模型文件夹：找不到 fr-FR 的模型");

    // A folder named by the language alone serves every country's locale.
    const QString german = models + u"de";
    ASSERT_TRUE(QDir().mkpath(german));
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(QStringLiteral("de-DE")), german);
    EXPECT_EQ(problem(QStringLiteral("de-DE")), u"加载语音识别模型失败，请检查模型文件夹：" + german + u" 里没有声学模型（含 mdef 的文件夹）");

    // Debian's model, linked file by file, so single parts can be broken.
    const QString acoustic = german + u"/acoustic/";
    ASSERT_TRUE(QDir().mkpath(acoustic));
    for (const QString &name : QDir(debian + u"/en-us").entryList(QDir::Files))
        ASSERT_TRUE(QFile::link(debian + u"/en-us/" + name, acoustic + name));
    EXPECT_TRUE(problem(QStringLiteral("de-DE")).endsWith(u"里没有发音词典（*.dict）"));
    ASSERT_TRUE(QFile::link(debian + u"/cmudict-en-us.dict", german + u"/words.dict"));
    ASSERT_TRUE(QFile::link(debian + u"/en-us-phone.lm.bin", german + u"/de-phone.lm.bin"));
    EXPECT_TRUE(problem(QStringLiteral("de-DE")).endsWith(u"里没有语言模型（*.lm.bin、*.lm 或 *.lm.DMP）"))
        << "a phonetic model recognises no words";
    ASSERT_TRUE(QFile::link(debian + u"/en-us.lm.bin", german + u"/de.lm.bin"));
    EXPECT_EQ(problem(QStringLiteral("de-DE")), QString()) << "a complete folder loads";

    // Damaged files that would end the whole process inside PocketSphinx only fail the load.
    const QString broken = u"加载语音识别模型失败，请检查模型文件夹：" + german + u" 里的模型文件无法读取";
    const std::pair<QString, QByteArray> damages[] = {
        {QStringLiteral("acoustic/mdef"), QByteArray(3'000, '\x7f')},
        {QStringLiteral("acoustic/means"), QByteArray(3'000, '\x7f')},
        {QStringLiteral("de.lm.bin"), QByteArray(3'000, '\x7f')},
    };
    for (const auto &[part, content] : damages) {
        SCOPED_TRACE(part.toStdString());
        const QString path = german + u'/' + part;
        const QString target = QFile::symLinkTarget(path);
        ASSERT_TRUE(QFile::remove(path));
        QFile garbage(path);
        ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
        garbage.write(content);
        garbage.close();
        EXPECT_EQ(problem(QStringLiteral("de-DE")), broken);
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_TRUE(QFile::link(target, path));
    }
    QDir(german).removeRecursively();
}

} // namespace
