#include "captions/MicHub.h"
#include "captions/MicSource.h"

#include "FakeAudioInput.h"
#include "QtPrinters.h"
#include "ScriptedRecognizer.h"

#include <gtest/gtest.h>

namespace {

const QString english = QStringLiteral("en-US");
const QString french = QStringLiteral("fr-FR");
const QString korean = QStringLiteral("ko-KR");
const QString chinese = QStringLiteral("zh-Hans");

class MicSourceTest : public ::testing::Test
{
protected:
    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    ScriptedRecognizers recognizers{{english, french, korean, chinese}, {}, {}, {}};
};

TEST_F(MicSourceTest, StartStopsAtTheFirstProblemWithItsWords)
{
    input->failure = QStringLiteral("找不到音频输入设备");
    EXPECT_EQ(MicSource({english}, hub, recognizers.factory()).start(),
              u"没有麦克风权限：请在 设置 → 声音 → 输入 中选择麦克风并允许 Quillet Beta 使用");
    input->failure.reset();

    EXPECT_EQ(MicSource({QStringLiteral("ja-JP"), english}, hub, recognizers.factory()).start(),
              u"本机语音识别不支持这门课的语言（ja-JP）")
        << "the lecture language must be recognisable";
    EXPECT_TRUE(recognizers.made.isEmpty());

    recognizers.failures.insert(korean, QStringLiteral("加载语音识别模型失败，请检查模型文件夹：坏了"));
    EXPECT_EQ(MicSource({english, korean}, hub, recognizers.factory()).start(),
              u"加载语音识别模型失败，请检查模型文件夹：坏了");
    recognizers.failures.clear();

    recognizers.sampleRates.insert(korean, 8'000);
    EXPECT_EQ(MicSource({english, korean}, hub, recognizers.factory()).start(), u"找不到可用的音频格式")
        << "one sound must suit every recogniser";
    recognizers.sampleRates.clear();
    EXPECT_EQ(MicSource({}, hub, recognizers.factory()).start(), u"找不到可用的音频格式");

    input->delivered = {48'000, 100'000};
    EXPECT_EQ(MicSource({english}, hub, recognizers.factory()).start(), u"无法转换麦克风音频格式");
    input->delivered = {48'000, 2};

    input->busy = QStringLiteral("无法打开音频输入设备“USB”");
    MicSource failed({english}, hub, recognizers.factory());
    EXPECT_EQ(failed.start(), u"麦克风启动失败：无法打开音频输入设备“USB”");
    failed.stop();
    EXPECT_FALSE(hub.running());
}

TEST_F(MicSourceTest, UnsupportedExtraLanguagesAreSkippedAndEveryRecognizerHearsTheMicrophone)
{
    MicSource mic({french, QStringLiteral("de-DE"), korean}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    EXPECT_EQ(recognizers.made.keys().size(), 2);
    EXPECT_TRUE(hub.running());

    input->play(std::vector<float>(48'000 * 2, 0.1f), 4'800);   // one second of stereo at 48 kHz
    for (ScriptedRecognizer *recognizer : recognizers.made)
        EXPECT_NEAR(double(recognizer->fed()), 16'000, 50) << "converted to 16 kHz mono";

    mic.stop();
    EXPECT_FALSE(hub.running()) << "the source let go of the microphone";
    mic.stop();
}

TEST_F(MicSourceTest, FinalsBecomeSentenceLinesAndVolatileResultsTheDraft)
{
    MicSource mic({english}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    ScriptedRecognizer &heard = *recognizers.made.value(english);

    heard.say(QStringLiteral("the cell"), false);
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"the cell");
    EXPECT_EQ(mic.read(), QString());

    heard.say(QStringLiteral("The cell divides.   Then it grows!"), true);
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.draft(), QString());
    EXPECT_EQ(mic.read(), u"The cell divides.\nThen it grows!") << "two sentences, two lines";
    EXPECT_EQ(mic.read(), QString()) << "a line is handed out once";

    heard.say(QStringLiteral("and that is all"), true);
    heard.say(QStringLiteral("chapter"), false);
    heard.say(QStringLiteral("42 17"), true);   // digits alone are no line and leave the draft alone
    heard.say(QStringLiteral("7 ?"), false);    // nor a draft
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"chapter");
    EXPECT_EQ(mic.takeFinals(), QStringList{QStringLiteral("and that is all")});

    // A doubtful word leaves a hole; digits inside speech stay.
    heard.say({{{QStringLiteral("Read"), 0.9}, {QStringLiteral(" chapter"), 0.9}, {QStringLiteral(" 7"), 0.2},
                {QStringLiteral(" zebra"), 0.2}, {QStringLiteral(" tonight."), 0.9}},
               true});
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.read(), u"Read chapter 7 tonight.");

    for (int i = 0; i <= MicSource::linesAtMost; ++i)
        heard.say(QStringLiteral("Line %1.").arg(i), true);
    ASSERT_TRUE(heard.waitUntilHeard());
    const QStringList kept = mic.takeFinals();
    ASSERT_EQ(kept.size(), MicSource::linesAtMost) << "an unread backlog loses its oldest line";
    EXPECT_EQ(kept.front(), u"Line 1.");
    EXPECT_EQ(kept.back(), u"Line 200.");

    heard.say(QStringLiteral("words still in progress"), false);
    ASSERT_TRUE(heard.waitUntilHeard());
    mic.stop();
    EXPECT_EQ(mic.read(), QString()) << "a draft at stop never becomes a line";
}

TEST_F(MicSourceTest, AnExtraLanguageNeedsThreeBelievableWordsOfItsOwn)
{
    MicSource mic({french, korean}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    ScriptedRecognizer &lecture = *recognizers.made.value(french);
    ScriptedRecognizer &extra = *recognizers.made.value(korean);

    lecture.say(QStringLiteral("Bonjour à tous."), true, 0.5);
    ASSERT_TRUE(lecture.waitUntilHeard());
    EXPECT_EQ(mic.read(), u"Bonjour à tous.") << "the lecture language passes at 0.45, Latin or not";

    extra.say(QStringLiteral("광합성 공부"), true, 0.9);
    extra.say(QStringLiteral("오늘은 광합성에 대해 배웁니다"), true, 0.55);
    extra.say(QStringLiteral("nous parlons de la photosynthèse"), true, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.read(), QString()) << "two words, doubtful words and French heard as Korean are dropped";

    extra.say(QStringLiteral("오늘은 광합성에 대해 배웁니다"), true, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.read(), u"오늘은 광합성에 대해 배웁니다");

    lecture.say(QStringLiteral("la photosynthèse"), false);
    ASSERT_TRUE(lecture.waitUntilHeard());
    extra.say(QStringLiteral("nous parlons de la photosynthèse"), false, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"la photosynthèse") << "a draft that doesn't fit its language leaves the old one";
    extra.say(QStringLiteral("오늘은 광합성에 대해"), false, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"오늘은 광합성에 대해") << "the last writer wins the draft";
}

TEST_F(MicSourceTest, AChineseLectureTakesALatinWordOnlyWhenQuiteSure)
{
    MicSource mic({chinese}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    ScriptedRecognizer &heard = *recognizers.made.value(chinese);
    for (const double confidence : {0.7, 0.8})
        heard.say({{{QStringLiteral("今天"), 0.9}, {QStringLiteral(" API"), confidence}, {QStringLiteral(" 学习"), 0.9}}, true});
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.takeFinals(), (QStringList{QStringLiteral("今天 学习"), QStringLiteral("今天 API 学习")}));
}

} // namespace
