#include "captions/MicSource.h"
#include "platform/MicHub.h"

#include "FakeAudioInput.h"
#include "QtPrinters.h"
#include "ScriptedRecognizer.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString english = u"en-US"_s;
const QString french = u"fr-FR"_s;
const QString korean = u"ko-KR"_s;

constexpr bool primary = true;
constexpr bool secondary = false;
constexpr bool latin = true;
constexpr bool notLatin = false;

TEST(MicSourceTextTest, CleanedKeepsBelievableRunsOfWords)
{
    const struct
    {
        const char *why;
        QList<SpeechRecognizer::Piece> pieces;
        bool primary;
        bool primaryIsLatin;
        QString kept;
    } cases[] = {
        {"in a Korean class a Latin word needs 0.75 and leaves a hole; letters beyond ASCII need no more",
         {{u"오늘은"_s, 0.9}, {u" API"_s, 0.7}, {u" 배웁니다"_s, 0.9}, {u" API"_s, 0.8}, {u" café"_s, 0.5}}, primary,
         notLatin, u"오늘은 배웁니다 API café"_s},
        {"in a French class 0.45 is enough", {{u"Bonjour"_s, 0.45}, {u" classe"_s, 0.44}}, primary, latin, u"Bonjour"_s},
        {"an extra language needs 0.6 and three words with letters in a row",
         {{u"오늘은"_s, 0.6}, {u" 광합성을"_s, 0.9}, {u" 배웁니다"_s, 0.9}, {u" 그리고"_s, 0.59}, {u" 시험"_s, 0.9},
          {u" 2"_s, 0.9}, {u" 봅니다"_s, 0.9}},
         secondary, latin, u"오늘은 광합성을 배웁니다"_s},
        {"marks and digits ride along inside a run but never start one",
         {{u" ,"_s, 0.1}, {u"42"_s, 1.0}, {u"Read"_s, 0.9}, {u" 42"_s, 0.1}, {u","_s, 1.0}, {u"  pages\n"_s, 0.9},
          {u" ."_s, 1.0}},
         primary, latin, u"Read 42, pages ."_s},
        {"digits are no words", {{u"42"_s, 1.0}, {u" 17"_s, 1.0}}, primary, latin, {}},
        {"nothing", {}, primary, latin, {}},
    };
    for (const auto &each : cases) {
        SCOPED_TRACE(each.why);
        EXPECT_EQ(MicSource::cleaned(each.pieces, each.primary, each.primaryIsLatin), each.kept);
    }
}

TEST(MicSourceTextTest, FitsJudgesOnlyTextsLongEnoughToJudge)
{
    const struct
    {
        QString text;
        QString language;
        bool fits;
    } cases[] = {
        {u"a"_s, korean, false},                              // one letter
        {u"a dog"_s, korean, true},                           // under six letters
        {u"오늘은 광합성에 대해 배웁니다"_s, korean, true},
        {u"今天我们讨论光合作用"_s, u"zh-Hans"_s, true},
        {u"今天我们讨论光合作用"_s, u"ja-JP"_s, true},        // Japanese in kanji reads as Chinese
        {u"今天我们讨论光合作用"_s, korean, false},
        {u"Heute sprechen wir über Chemie"_s, french, false},
    };
    for (const auto &each : cases)
        EXPECT_EQ(MicSource::fits(each.text, each.language), each.fits) << each.text << " in " << each.language;
}

class MicSourceTest : public ::testing::Test
{
protected:
    std::optional<QString> start(const QStringList &locales)
    {
        return MicSource(locales, hub, recognizers.factory()).start();
    }

    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    ScriptedRecognizers recognizers{{english, french, korean}, {}, {}, {}};
};

TEST_F(MicSourceTest, StartStopsAtTheFirstProblemWithItsWords)
{
    input->failure = u"找不到音频输入设备"_s;
    EXPECT_EQ(start({english}), u"没有麦克风权限：请在 设置 → 声音 → 输入 中选择麦克风并允许 Quillet Beta 使用");
    input->failure.reset();

    EXPECT_EQ(start({u"ja-JP"_s, english}), u"本机语音识别不支持这门课的语言（ja-JP）");
    EXPECT_TRUE(recognizers.made.isEmpty());

    recognizers.failures.insert(korean, u"加载语音识别模型失败，请检查模型文件夹：坏了"_s);
    EXPECT_EQ(start({english, korean}), u"加载语音识别模型失败，请检查模型文件夹：坏了");
    recognizers.failures.clear();

    recognizers.sampleRates.insert(korean, 8'000);
    EXPECT_EQ(start({english, korean}), u"找不到可用的音频格式") << "one sound must suit every recogniser";
    EXPECT_EQ(start({}), u"找不到可用的音频格式");

    input->delivered = {48'000, 100'000};
    EXPECT_EQ(start({english}), u"无法转换麦克风音频格式");
    input->delivered = {48'000, 2};

    input->busy = u"无法打开音频输入设备“USB”"_s;
    EXPECT_EQ(start({english}), u"麦克风启动失败：无法打开音频输入设备“USB”");
    EXPECT_FALSE(hub.running());
}

TEST_F(MicSourceTest, FinalsBecomeSentenceLinesAndVolatileResultsTheDraft)
{
    MicSource mic({english}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    ScriptedRecognizer &heard = *recognizers.made.value(english);

    heard.say(u"the cell"_s, false);
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"the cell");
    EXPECT_EQ(mic.read(), QString());

    heard.say(u"The cell divides.   Then it grows!"_s, true);
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.draft(), QString());
    EXPECT_EQ(mic.read(), u"The cell divides.\nThen it grows!") << "two sentences, two lines";
    EXPECT_EQ(mic.read(), QString()) << "a line is handed out once";

    heard.say(u"and that is all"_s, true);
    heard.say(u"chapter"_s, false);
    heard.say(u"42 17"_s, true);   // digits alone are no line and leave the draft alone
    heard.say(u"7 ?"_s, false);    // nor a draft
    ASSERT_TRUE(heard.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"chapter");
    EXPECT_EQ(mic.takeFinals(), QStringList{u"and that is all"_s});

    for (int i = 0; i <= MicSource::linesAtMost; ++i)
        heard.say(u"Line %1."_s.arg(i), true);
    ASSERT_TRUE(heard.waitUntilHeard());
    const QStringList kept = mic.takeFinals();
    ASSERT_EQ(kept.size(), MicSource::linesAtMost) << "an unread backlog loses its oldest line";
    EXPECT_EQ(kept.front(), u"Line 1.");
    EXPECT_EQ(kept.back(), u"Line 200.");

    heard.say(u"words still in progress"_s, false);
    ASSERT_TRUE(heard.waitUntilHeard());
    mic.stop();
    EXPECT_EQ(mic.read(), QString()) << "a draft at stop never becomes a line";
}

TEST_F(MicSourceTest, EveryLanguageHearsTheMicrophoneAndAnExtraOneNeedsThreeBelievableWords)
{
    MicSource mic({korean, u"de-DE"_s, french}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    EXPECT_EQ(recognizers.made.size(), 2) << "an extra language without a recogniser is skipped";
    input->play(std::vector<float>(48'000 * 2, 0.1f), 4'800);   // one second of stereo at 48 kHz
    for (ScriptedRecognizer *recognizer : recognizers.made)
        EXPECT_NEAR(double(recognizer->fed), 16'000, 50) << "converted to 16 kHz mono";
    ScriptedRecognizer &lecture = *recognizers.made.value(korean);
    ScriptedRecognizer &extra = *recognizers.made.value(french);

    lecture.say({{{u"오늘은"_s, 0.9}, {u" API"_s, 0.7}, {u" 배웁니다"_s, 0.5}}, true});
    extra.say(u"Nous parlons de photosynthèse"_s, true, 0.55);
    extra.say(u"Today we talk about photosynthesis"_s, true, 0.9);
    ASSERT_TRUE(lecture.waitUntilHeard() && extra.waitUntilHeard());
    EXPECT_EQ(mic.read(), u"오늘은 배웁니다") << "unsure Latin words, doubtful or misheard extra lines are dropped";
    extra.say(u"Nous parlons de photosynthèse"_s, true, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.read(), u"Nous parlons de photosynthèse");

    lecture.say(u"광합성"_s, false);
    ASSERT_TRUE(lecture.waitUntilHeard());
    extra.say(u"Today we talk about photosynthesis"_s, false, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"광합성") << "a draft that doesn't fit its language leaves the old one";
    extra.say(u"Nous parlons de"_s, false, 0.9);
    ASSERT_TRUE(extra.waitUntilHeard());
    EXPECT_EQ(mic.draft(), u"Nous parlons de") << "the last writer wins the draft";

    mic.stop();
    EXPECT_FALSE(hub.running()) << "the source let go of the microphone";
    mic.stop();
}

TEST_F(MicSourceTest, SoundARecogniserFarBehindDropsIsToldAsTheProblem)
{
    MicSource mic({english}, hub, recognizers.factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    input->play(std::vector<float>(48'000 * 2, 0.1f), 4'800);
    EXPECT_EQ(mic.problem(), std::nullopt);
    recognizers.made.value(english)->behind = true;
    // Three seconds the audio thread did not wait for.
    input->play(std::vector<float>(48'000 * 2 * 3, 0.1f), 4'800);
    EXPECT_EQ(mic.problem(), u"本机语音识别跟不上，已跳过 3 秒声音");
}

} // namespace
