#include "captions/CloudSource.h"

#include "app/Config.h"
#include "captions/Captions.h"
#include "captions/CloudUploader.h"
#include "captions/MicHub.h"

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

// Stereo sound at 48 kHz, as the hub's input delivers it: 0.1 s of room noise, speech for
// `speech` seconds, then quiet until `total`. By default the segmenter cuts it at 2.5 s.
std::vector<float> sound(double speech = 1.8, double total = 2.6)
{
    std::vector<float> samples(size_t(total * 48'000) * 2);
    for (size_t i = 0; i < samples.size() / 2; ++i) {
        const double t = double(i) / 48'000;
        const double level = t < 0.1 ? 0.0003 : t < 0.1 + speech ? 0.05 : 0;
        samples[2 * i] = samples[2 * i + 1] = float(level * std::sqrt(2.0) * std::sin(2 * M_PI * 440 * t));
    }
    return samples;
}

class CloudSourceTest : public CloudFixture
{
protected:
    std::unique_ptr<CloudSource> source(QStringList locales, bool viaRelay = false,
                                        std::chrono::milliseconds timeout = 5s)
    {
        return std::make_unique<CloudSource>(
            CloudSource::Settings{QStringLiteral("gpt-4o-transcribe"), std::move(locales), viaRelay, timeout}, hub,
            recognizers.factory(), clock);
    }
    void play(const std::vector<float> &samples) { input->play(samples, 4'096); }
    // The lines the source gives, read as the engine polls it, once there are `count`.
    static QString linesOf(CaptionSource &cloud, qsizetype count = 1)
    {
        QStringList lines;
        runEventsUntil([&] {
            lines << cloud.read().split(u'\n', Qt::SkipEmptyParts);
            return lines.size() >= count;
        });
        return lines.join(u'\n');
    }

    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    ScriptedRecognizers recognizers{{english, korean}, {}, {}, {}};
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
};

TEST_F(CloudSourceTest, StartNeedsAKeyOfItsOwnAndAMicrophone)
{
    const QString noKey = QStringLiteral(u"云端识别需要 OpenAI 的 API key：在 设置 › AI 模型分配 里填上");
    Keychain::remove(QStringLiteral("openai"));
    EXPECT_EQ(source({english})->start(), noKey);
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

TEST_F(CloudSourceTest, MakeSourceSendsSpeechCutAtPausesThroughTheRelayUntilItStops)
{
    Config config;
    config.recognizer = QStringLiteral("cloud");
    config.cloudModel.reset();
    config.lectureLanguage = QStringLiteral("Korean");
    config.extraLanguages = QStringList{QStringLiteral("English")};
    // The first answer comes late, so the second segment is still queued when the source stops.
    auto slow = TestServer::Response::json(QStringLiteral(u"{\"text\":\"오늘은 극한을 정의합니다. 그다음 미분입니다.\"}").toUtf8());
    slow.delay = 300ms;
    server.enqueue(slow);
    say(QStringLiteral("Any questions so far?"));
    const auto cloud = makeSource(config, hub);
    ASSERT_EQ(cloud->start(), std::nullopt) << "Korean can't be recognised on the device: only the draft is lost";
    play(sound());
    play(sound());
    play(sound(1.4, 1.5));
    ASSERT_TRUE(server.waitForRequests(1));
    cloud->stop();
    EXPECT_FALSE(hub.running());
    EXPECT_EQ(linesOf(*cloud, 3), QStringLiteral(u"오늘은 극한을 정의합니다.\n그다음 미분입니다.\nAny questions so far?"));
    play(sound());
    runEventsFor(300ms);
    const QList<TestServer::Request> requests = server.requests();
    ASSERT_EQ(requests.size(), 2) << "neither what was still being collected nor what came after stop is sent";
    EXPECT_EQ(requests[1].path, "/relay/openai/v1/audio/transcriptions");
    EXPECT_TRUE(requests[0].body.contains("\r\n\r\ngpt-4o-mini-transcribe\r\n"));
    EXPECT_TRUE(requests[0].body.contains(QStringLiteral(u"섞입니다. (+ English)\r\n").toUtf8()));
    const char *wav = requests[0].body.constData() + requests[0].body.indexOf("RIFF");
    EXPECT_NEAR(qFromLittleEndian<quint32>(wav + 40) / 2.0, 40'000, 1'400) << "2.5 s at 16 kHz, to a buffer";

    static const Text::Regex cut(QStringLiteral(
        "^segment 2\\.[56]s, speech 1\\.[789]s, level 0\\.0[34]\\d\\d, floor 0\\.0\\d{3} → sent$"));
    const QStringList log = logged();
    ASSERT_EQ(log.size(), 6) << log.join(u'\n').toStdString();
    EXPECT_TRUE(cut.matches(log[0]) && cut.matches(log[3])) << log.join(u'\n').toStdString();
    EXPECT_TRUE(log[1].startsWith(QStringLiteral("HTTP 200: ")));
    EXPECT_EQ(log[2], QStringLiteral(u"kept 2: 오늘은 극한을 정의합니다. / 그다음 미분입니다."));

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
    play(sound());
    EXPECT_EQ(linesOf(*cloud), QStringLiteral(u"오늘은 극한을 정의하겠습니다."));
    EXPECT_EQ(server.requests().value(0).header("Authorization"), "Bearer sk-test");
    EXPECT_EQ(cloud->draft(), QStringLiteral(u"그다음")) << "the covered sentence left from the front";

    clock->advance(10s);
    const QString later = QStringLiteral(u"변화율을 재는 것입니다.");
    local.say(later, true);
    ASSERT_TRUE(local.waitUntilHeard());
    EXPECT_EQ(cloud->draft(), later) << "heard after the covered stretch";
}

TEST_F(CloudSourceTest, TroubleComesAndGoesWhileTheSourceKeepsRunning)
{
    TestServer::Response stalled;
    stalled.stall = true;
    server.enqueue(stalled);
    // Each answer after the stall comes late, so the test sees the trouble before it changes.
    for (auto answer : {TestServer::Response::json("<html>oops</html>", 502),
                        TestServer::Response::json(R"({"text":"The next answer is good."})")}) {
        answer.delay = 200ms;
        server.enqueue(answer);
    }
    // A language the device can't recognise costs only the draft.
    auto cloud = source({QStringLiteral("es-ES"), english}, false, 500ms);
    ASSERT_EQ(cloud->start(), std::nullopt);

    const auto speech = sound();
    QElapsedTimer playing;
    playing.start();
    for (int i = 0; i < 3; ++i)
        play(speech);
    EXPECT_LT(playing.elapsed(), 400 * timeScale) << "the audio thread never waits for an upload";

    ASSERT_TRUE(runEventsUntil([&] { return cloud->problem() == CloudUploader::cannotConnect(); }));
    ASSERT_TRUE(runEventsUntil([&] { return cloud->problem() == QStringLiteral(u"云端识别出错（502）"); }));
    EXPECT_EQ(linesOf(*cloud), QStringLiteral("The next answer is good."));
    EXPECT_FALSE(cloud->problem());
    EXPECT_EQ(cloud->draft(), QString());
    EXPECT_EQ(server.requests().size(), 3);
}

} // namespace
