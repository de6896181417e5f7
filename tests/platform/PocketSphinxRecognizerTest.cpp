#include "platform/AudioConverter.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/WavFile.h"

#include "Files.h"
#include "QtPrinters.h"
#include "SpeechAudio.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

using namespace Qt::StringLiterals;

namespace {

using Result = SpeechRecognizer::Result;

// The problem making a recogniser for the locale, empty when it is made.
QString problem(const QString &locale)
{
    auto made = PocketSphinxRecognizer::make(locale);
    return std::get_if<QString>(&made) ? std::get<QString>(made) : QString();
}

TEST(PocketSphinxRecognizerTest, GivesVolatileWordsThenAFinalSentencePerUtterance)
{
    QTemporaryDir folder;
    const auto speech = SpeechAudio::make(folder.path(), {SpeechAudio::lecture()});
    ASSERT_TRUE(speech);
    auto made = PocketSphinxRecognizer::make(u"en-US"_s);
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<SpeechRecognizer>>(made)) << std::get<QString>(made);
    SpeechRecognizer &recognizer = *std::get<std::unique_ptr<SpeechRecognizer>>(made);

    std::optional<Result> got = Result{};
    std::jthread reader([&](std::stop_token stop) { got = recognizer.next(stop); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    reader.request_stop();
    reader.join();
    EXPECT_FALSE(got) << "stop ends a reader waiting for sound";

    // The whole file in 50 ms buffers, then the end of the sound.
    WavFile file(speech->path);
    ASSERT_EQ(file.open(), std::nullopt);
    const AudioFormat format = file.format();
    const auto converter = AudioConverter::create(format, recognizer.sampleRate());
    std::vector<float> block;
    while (file.read(format.sampleRate / 20, block))
        recognizer.feed(converter->convert({block.data(), qsizetype(block.size()) / format.channels, format}));
    recognizer.finish();
    QStringList finals;
    bool volatileSinceFinal = false;
    while (const auto result = recognizer.next(std::stop_token())) {
        ASSERT_FALSE(result->pieces.isEmpty());
        QString text;
        for (const SpeechRecognizer::Piece &piece : result->pieces) {
            EXPECT_GE(piece.confidence, 0.0);
            EXPECT_LE(piece.confidence, 1.0);
            EXPECT_FALSE(piece.text.contains(u'(') || piece.text.contains(u'<') || piece.text.contains(u'['))
                << "no word variants or fillers: " << piece.text;
            EXPECT_EQ(piece.text.startsWith(u' '), !text.isEmpty()) << "a blank leads every word but the first";
            text += piece.text;
        }
        if (result->isFinal) {
            EXPECT_TRUE(volatileSinceFinal) << "every sentence shows words before it is final";
            finals << text;
        }
        volatileSinceFinal = !result->isFinal;
    }
    ASSERT_EQ(finals.size(), 3) << finals.join(u" | ");
    EXPECT_TRUE(finals[0].contains(u"read chapter seven before the exam")) << finals[0];
    EXPECT_TRUE(finals[1].contains(u"chemical energy")) << finals[1];
    EXPECT_TRUE(finals[2].contains(u"chapters three to five")) << finals[2];
    EXPECT_FALSE(recognizer.next(std::stop_token())) << "ended sound stays ended";
}

TEST(PocketSphinxRecognizerTest, ModelFoldersAreFoundByLocaleAndBadOnesAreWorded)
{
    const QString debian = u"/usr/share/pocketsphinx/model/en-us"_s;
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(u"en-US"_s), debian);
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(QString()), std::nullopt);
    EXPECT_EQ(problem(u"fr-FR"_s), u"加载语音识别模型失败，请检查模型文件夹：找不到 fr-FR 的模型");

    // A folder named by the language alone serves every country's locale.
    const QString german = QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + u"/models/de";
    const auto cleanUp = qScopeGuard([&] { QDir(german).removeRecursively(); });
    ASSERT_TRUE(QDir().mkpath(german));
    EXPECT_EQ(PocketSphinxRecognizer::modelFolder(u"de-DE"_s), german);
    const QString failed = u"加载语音识别模型失败，请检查模型文件夹："_s + german;
    EXPECT_EQ(problem(u"de-DE"_s), failed + u" 里没有声学模型（含 mdef 的文件夹）");

    // Debian's model, linked file by file, so single parts can be broken.
    const QString acoustic = german + u"/acoustic/";
    ASSERT_TRUE(QDir().mkpath(acoustic));
    for (const QString &name : QDir(debian + u"/en-us").entryList(QDir::Files))
        ASSERT_TRUE(QFile::link(debian + u"/en-us/" + name, acoustic + name));
    EXPECT_EQ(problem(u"de-DE"_s), failed + u" 里没有发音词典（*.dict）");
    ASSERT_TRUE(QFile::link(debian + u"/cmudict-en-us.dict", german + u"/words.dict"));
    ASSERT_TRUE(QFile::link(debian + u"/en-us-phone.lm.bin", german + u"/de-phone.lm.bin"));
    EXPECT_EQ(problem(u"de-DE"_s), failed + u" 里没有语言模型（*.lm.bin、*.lm 或 *.lm.DMP）")
        << "a phonetic model recognises no words";
    ASSERT_TRUE(QFile::link(debian + u"/en-us.lm.bin", german + u"/de.lm.bin"));
    EXPECT_EQ(problem(u"de-DE"_s), QString()) << "a complete folder loads";

    // Damaged files that would end the whole process inside PocketSphinx only fail the load.
    for (const QString &part : {u"acoustic/mdef"_s, u"acoustic/means"_s, u"de.lm.bin"_s}) {
        SCOPED_TRACE(part.toStdString());
        const QString path = german + u'/' + part;
        const QString target = QFile::symLinkTarget(path);
        ASSERT_TRUE(QFile::remove(path));
        writeFile(path, QByteArray(3'000, '\x7f'));
        EXPECT_EQ(problem(u"de-DE"_s), failed + u" 里的模型文件无法读取");
        ASSERT_TRUE(QFile::remove(path));
        ASSERT_TRUE(QFile::link(target, path));
    }
}

} // namespace
