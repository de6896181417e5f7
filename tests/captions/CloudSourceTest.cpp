#include "captions/CloudSource.h"

#include "app/Config.h"
#include "captions/Captions.h"
#include "captions/CloudUploader.h"
#include "captions/MicHub.h"
#include "platform/Keychain.h"
#include "text/Regex.h"

#include "CloudFixture.h"
#include "EventLoop.h"
#include "FakeAudioInput.h"
#include "ManualClock.h"
#include "ScriptedRecognizer.h"
#include "TimeScale.h"

#include <QElapsedTimer>
#include <QtEndian>

#include <cmath>

using namespace std::chrono_literals;

namespace {

const QString english = QStringLiteral("en-US");
const QString korean = QStringLiteral("ko-KR");

// Stereo sound at 48 kHz, as the hub's input delivers it: a tone of the given root mean square.
std::vector<float> sound(double seconds, double level, double frequency = 440)
{
    const auto frames = size_t(seconds * 48'000);
    std::vector<float> samples(frames * 2);
    for (size_t i = 0; i < frames; ++i)
        samples[2 * i] = samples[2 * i + 1]
            = float(level * std::sqrt(2.0) * std::sin(2 * M_PI * frequency * double(i) / 48'000));
    return samples;
}

// Room noise, speech until 1.9 s, then quiet: the segmenter cuts it at 2.5 s.
std::vector<float> sentence()
{
    std::vector<float> all = sound(0.1, 0.0003, 200);
    for (const auto &part : {sound(1.8, 0.05), sound(0.7, 0)})
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

// The number of samples in the WAV file of an upload's body.
qsizetype uploadedSamples(const TestServer::Request &request)
{
    const qsizetype wav = request.body.indexOf("RIFF");
    if (wav < 0)
        return -1;
    return qFromLittleEndian<quint32>(request.body.constData() + wav + 40) / 2;
}

class CloudSourceTest : public CloudFixture
{
protected:
    void SetUp() override
    {
        CloudFixture::SetUp();
        Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-test"));
    }

    std::unique_ptr<CloudSource> source(QStringList locales, bool viaRelay = false,
                                        std::chrono::milliseconds timeout = 5s)
    {
        return std::make_unique<CloudSource>(
            CloudSource::Settings{QStringLiteral("gpt-4o-transcribe"), std::move(locales), viaRelay, timeout}, hub,
            recognizers.factory(), clock);
    }
    void play(const std::vector<float> &samples) { input->play(samples, 4'096); }
    bool readsSoon(CaptionSource &cloud, QString &lines)
    {
        return runEventsUntil([&] {
            lines += cloud.read();
            return !lines.isEmpty();
        });
    }

    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    ScriptedRecognizers recognizers{{english, korean}, {}, {}, {}};
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
};

TEST_F(CloudSourceTest, StartNeedsAKeyOfItsOwnAndAMicrophone)
{
    Keychain::remove(QStringLiteral("openai"));
    EXPECT_EQ(source({english})->start(), QStringLiteral(u"云端识别需要 OpenAI 的 API key：在 设置 › AI 模型分配 里填上"));
    Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-test"));

    input->failure = QStringLiteral(u"找不到音频输入设备");
    EXPECT_EQ(source({english}, true)->start(),
              QStringLiteral(u"没有麦克风权限：请在 设置 → 声音 → 输入 中选择麦克风并允许 Quillet Beta 使用"))
        << "through the relay no key is needed, but a microphone is";
    input->failure.reset();
    input->delivered = {48'000, 100'000};
    EXPECT_EQ(source({english})->start(), QStringLiteral(u"找不到可用的音频格式"));
    input->delivered = {48'000, 2};

    input->busy = QStringLiteral(u"无法打开音频输入设备“USB”");
    auto failed = source({english});
    EXPECT_EQ(failed->start(), QStringLiteral(u"麦克风启动失败：无法打开音频输入设备“USB”"));
    failed->stop();
    EXPECT_FALSE(hub.running());
}

TEST_F(CloudSourceTest, SpeechIsCutAtAPauseUploadedAndReadAsLines)
{
    say(QStringLiteral("We begin with limits. Then derivatives."));
    auto cloud = source({english});
    ASSERT_EQ(cloud->start(), std::nullopt);
    EXPECT_TRUE(hub.running());
    play(sentence());

    QString lines;
    ASSERT_TRUE(readsSoon(*cloud, lines));
    EXPECT_EQ(lines, QStringLiteral("We begin with limits.\nThen derivatives."));
    EXPECT_FALSE(cloud->problem());
    const TestServer::Request request = server.requests().value(0);
    EXPECT_EQ(request.header("Authorization"), "Bearer sk-test");
    EXPECT_TRUE(request.body.contains("\r\n\r\ngpt-4o-transcribe\r\n"));
    EXPECT_TRUE(request.body.contains("\r\n\r\nA university lecture in English.\r\n"));
    EXPECT_NEAR(double(uploadedSamples(request)), 40'000, 1'400) << "2.5 s at 16 kHz, to a buffer";

    static const Text::Regex cut(QStringLiteral(
        "^\\S+ segment 2\\.[56]s, speech 1\\.[789]s, level 0\\.0[34]\\d\\d, floor 0\\.0\\d{3} → sent$"));
    const QStringList log = logLines();
    ASSERT_EQ(log.size(), 3) << log.join(u'\n').toStdString();
    EXPECT_TRUE(cut.matches(log[0])) << log[0].toStdString();
    EXPECT_TRUE(log[1].contains(QStringLiteral("HTTP 200: ")));
    EXPECT_TRUE(log[2].endsWith(QStringLiteral("kept 2: We begin with limits. / Then derivatives.")));

    cloud->stop();
    EXPECT_FALSE(hub.running());
    play(sentence());
    EXPECT_EQ(server.requests().size(), 1) << "nothing is heard after stop";
}

TEST_F(CloudSourceTest, MakeSourceChoosesTheCloudWithItsDefaultModelThroughTheRelayOfASignedInUser)
{
    Config config;
    config.recognizer = QStringLiteral("cloud");
    config.cloudModel.reset();
    config.lectureLanguage = QStringLiteral("Korean");
    config.extraLanguages = QStringList{QStringLiteral("English")};
    say(QStringLiteral(u"오늘은 극한을 정의하겠습니다."));
    const auto relayed = makeSource(config, hub);
    ASSERT_EQ(relayed->start(), std::nullopt) << "Korean can't be recognised on the device: only the draft is lost";
    play(sentence());
    QString lines;
    ASSERT_TRUE(readsSoon(*relayed, lines));
    EXPECT_EQ(lines, QStringLiteral(u"오늘은 극한을 정의하겠습니다."));
    const TestServer::Request request = server.requests().value(0);
    EXPECT_EQ(request.path, "/relay/openai/v1/audio/transcriptions");
    EXPECT_TRUE(request.body.contains("\r\n\r\ngpt-4o-mini-transcribe\r\n"));
    EXPECT_TRUE(request.body.contains(QStringLiteral(u"섞입니다. (+ English)\r\n").toUtf8()));
    relayed->stop();

    config.keySource = QStringLiteral("own");
    Keychain::remove(QStringLiteral("openai"));
    EXPECT_EQ(makeSource(config, hub)->start(), QStringLiteral(u"云端识别需要 OpenAI 的 API key：在 设置 › AI 模型分配 里填上"));
}

TEST_F(CloudSourceTest, TheDraftShowsLocalSentencesUntilTheCloudCoversThem)
{
    say(QStringLiteral(u"오늘은 극한을 정의하겠습니다."));
    auto cloud = source({korean});
    ASSERT_EQ(cloud->start(), std::nullopt);
    ScriptedRecognizer &local = *recognizers.made.value(korean);

    const QString first = QStringLiteral(u"오늘은 극한을 정의합니다.");
    local.say(first, true);
    local.say(QStringLiteral(u"그다음"), false);
    ASSERT_TRUE(local.waitUntilHeard());
    EXPECT_EQ(cloud->draft(), first + QStringLiteral(u" 그다음"));
    EXPECT_EQ(cloud->read(), QString()) << "local sentences never become lines";

    clock->advance(5s);
    play(sentence());
    QString lines;
    ASSERT_TRUE(readsSoon(*cloud, lines));
    EXPECT_EQ(lines, QStringLiteral(u"오늘은 극한을 정의하겠습니다."));
    EXPECT_EQ(cloud->draft(), QStringLiteral(u"그다음")) << "the covered sentence left from the front";

    clock->advance(10s);
    const QString later = QStringLiteral(u"변화율을 재는 것입니다.");
    local.say(later, true);
    ASSERT_TRUE(local.waitUntilHeard());
    EXPECT_EQ(cloud->draft(), later) << "heard after the covered stretch";
    cloud->stop();
}

TEST_F(CloudSourceTest, TroubleComesAndGoesWhileTheSourceKeepsRunning)
{
    TestServer::Response stalled;
    stalled.stall = true;
    server.enqueue(stalled);
    // Each answer after the stall comes late, so the test sees the trouble before it changes.
    TestServer::Response bad = TestServer::Response::json("<html>oops</html>", 502);
    bad.delay = 200ms;
    server.enqueue(bad);
    TestServer::Response good = TestServer::Response::json(R"({"text":"The next answer is good."})");
    good.delay = 200ms;
    server.enqueue(good);
    // A language the device can't recognise costs only the draft.
    auto cloud = source({QStringLiteral("es-ES"), english}, false, 500ms);
    ASSERT_EQ(cloud->start(), std::nullopt);

    const auto speech = sentence();
    QElapsedTimer playing;
    playing.start();
    for (int i = 0; i < 3; ++i)
        play(speech);
    EXPECT_LT(playing.elapsed(), 400 * timeScale) << "the audio thread never waits for an upload";

    ASSERT_TRUE(runEventsUntil([&] { return cloud->problem() == CloudUploader::cannotConnect(); }));
    ASSERT_TRUE(runEventsUntil([&] { return cloud->problem() == QStringLiteral(u"云端识别出错（502）"); }));
    QString lines;
    ASSERT_TRUE(readsSoon(*cloud, lines));
    EXPECT_EQ(lines, QStringLiteral("The next answer is good."));
    EXPECT_FALSE(cloud->problem());
    EXPECT_EQ(cloud->draft(), QString());
    EXPECT_EQ(server.requests().size(), 3);
}

TEST_F(CloudSourceTest, StopSendsWhatIsQueuedButNotWhatIsStillBeingCollected)
{
    TestServer::Response slow = TestServer::Response::json(R"({"text":"First part of the talk."})");
    slow.delay = 300ms;
    server.enqueue(slow);
    say(QStringLiteral("Second part of the talk."));
    auto cloud = source({english}, true);
    ASSERT_EQ(cloud->start(), std::nullopt);
    play(sentence());
    play(sentence());
    play(sound(1.5, 0.05));
    ASSERT_TRUE(server.waitForRequests(1));
    cloud->stop();

    QStringList reads;
    ASSERT_TRUE(runEventsUntil([&] {
        reads << cloud->read();
        reads.removeAll(QString());
        return reads.join(u'\n').count(u'\n') == 1;
    })) << "the queued segment still goes out";
    EXPECT_EQ(reads.join(u'\n'), QStringLiteral("First part of the talk.\nSecond part of the talk."));
    EXPECT_EQ(server.requests().value(1).path, "/relay/openai/v1/audio/transcriptions");
    runEventsFor(300ms);
    EXPECT_EQ(server.requests().size(), 2) << "the speech still being collected is not sent";
}

} // namespace
