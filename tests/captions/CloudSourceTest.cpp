#include "captions/CloudSource.h"

#include "captions/Captions.h"
#include "captions/CloudUploader.h"
#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "platform/Log.h"
#include "platform/MicHub.h"
#include "settings/Config.h"
#include "text/Regex.h"

#include "EventLoop.h"
#include "FakeAudioInput.h"
#include "ManualClock.h"
#include "QtPrinters.h"
#include "ScriptedRecognizer.h"
#include "TestServer.h"
#include "TimeScale.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>

using namespace std::chrono_literals;

namespace {

const QString korean = QStringLiteral("ko-KR");
const std::vector<qint16> speech{1, -2, 0x1234};

QStringList locales(const char *ids)
{
    return QString::fromLatin1(ids).split(u' ', Qt::SkipEmptyParts);
}

// Stereo sound at 48 kHz, as the hub's input delivers it: 0.1 s of room noise, speech for
// `loud` seconds, then quiet until `total`. By default the segmenter cuts it at 2.5 s.
std::vector<float> sound(double loud = 1.8, double total = 2.6)
{
    std::vector<float> samples(size_t(total * 48'000) * 2);
    for (size_t i = 0; i < samples.size() / 2; ++i) {
        const double t = double(i) / 48'000;
        const double level = t < 0.1 ? 0.0003 : t < 0.1 + loud ? 0.05 : 0;
        samples[2 * i] = samples[2 * i + 1] = float(level * std::sqrt(2.0) * std::sin(2 * M_PI * 440 * t));
    }
    return samples;
}

// One local server stands in for OpenAI's transcription endpoint (through "speech.url") and for
// the relay (under "/relay"); a keychain in a temporary file holds an OpenAI key and a relay
// session; the test plays the microphone and scripts the local recognisers.
class CloudSourceTest : public ::testing::Test
{
protected:
    static constexpr auto session = "session-token";

    void SetUp() override
    {
        Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(QStringLiteral("secrets.json"))));
        Keychain::set(QStringLiteral("quillet-session"), QString::fromLatin1(session));
        Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-test"));
        QSettings().setValue(QStringLiteral("speech.url"), server.url());
        QSettings().setValue(QStringLiteral("relay.url"), QString(server.url() + QStringLiteral("/relay")));
        logStart_ = QFile(Log::path()).size();
    }
    void TearDown() override
    {
        QSettings().remove(QStringLiteral("speech.url"));
        QSettings().remove(QStringLiteral("relay.url"));
    }

    CloudUploader uploader(const char *ids, bool viaRelay = false, std::chrono::milliseconds timeout = 5s)
    {
        const QString prompt = CloudRequest::prompt(locales(ids));
        return CloudUploader(CloudRequest({QStringLiteral("gpt-4o-mini-transcribe"), prompt, viaRelay,
                                           QStringLiteral("sk-test"), timeout}),
                             CloudFilter(locales(ids), prompt), transcript);
    }
    static TestServer::Response reply(const QByteArray &body, int status = 200,
                                      std::chrono::milliseconds delay = 0ms)
    {
        auto response = TestServer::Response::json(body, status);
        response.delay = delay;
        return response;
    }
    // Answers the next request with {"text": text}; text holds no quote or backslash.
    void say(const QString &text) { server.enqueue(reply("{\"text\":\"" + text.toUtf8() + "\"}")); }
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
    // The messages logged since the test began, each with its time stamp taken off.
    QStringList logged() const
    {
        static const Text::Regex stamp(QStringLiteral("(?m)^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ "));
        QFile file(Log::path());
        file.open(QIODevice::ReadOnly);
        file.seek(logStart_);
        return stamp.replace(QString::fromUtf8(file.readAll()), {}).split(u'\n', Qt::SkipEmptyParts);
    }

    TestServer server;
    QTemporaryDir folder;
    FakeAudioInput *input = new FakeAudioInput;
    MicHub hub{std::unique_ptr<AudioInput>(input)};
    ScriptedRecognizers recognizers{{korean}, {}, {}, {}};
    std::shared_ptr<ManualClock> clock = std::make_shared<ManualClock>();
    std::shared_ptr<CloudTranscript> transcript = std::make_shared<CloudTranscript>();

private:
    qint64 logStart_ = 0;
};

TEST(CloudRequestTest, PromptIsTheLectureSampleNamingTheExtraLanguagesInEnglish)
{
    const std::pair<const char *, const char *> prompts[] = {
        {"ko-KR en-US", "한국어 대학 강의입니다. 가끔 영어 단어나 문장이 섞입니다. (+ English)"},
        {"zh-Hans ja-JP xx fr-FR", "这是一堂中文大学课程。 (+ Japanese, French)"},   // xx names no language
        {"de-DE", "Eine Universitätsvorlesung auf Deutsch."},
        {"ja-JP xx", "日本語の大学の講義です。"},
        {"es-ES en-US", "University lecture."},   // no sample: the extras aren't named
        {"", "University lecture."},
    };
    for (const auto &[ids, prompt] : prompts)
        EXPECT_EQ(CloudRequest::prompt(locales(ids)), QString::fromUtf8(prompt)) << ids;
}

TEST_F(CloudSourceTest, EachSegmentIsAMultipartPostByteForByte)
{
    auto direct = uploader("fr-FR ko-KR");
    auto relayed = uploader("en-US", true);
    for (const char *text : {"Bonjour à tous.", "Alors, on continue avec les limites.", "Limits."})
        say(QString::fromUtf8(text));
    for (CloudUploader *sender : {&direct, &direct, &relayed})
        sender->upload(speech, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(transcript->read(),
              QStringLiteral(u"Bonjour à tous.\nAlors, on continue avec les limites.\nLimits."));

    const QList<TestServer::Request> requests = server.requests();
    ASSERT_EQ(requests.size(), 3);
    const TestServer::Request &request = requests[0];
    EXPECT_EQ(request.path, "/v1/audio/transcriptions");
    EXPECT_EQ(request.header("Authorization"), "Bearer sk-test");
    const QByteArray type = request.header("Content-Type");
    ASSERT_TRUE(type.startsWith("multipart/form-data; boundary=Quillet-")) << type.constData();
    const QByteArray boundary = type.mid(type.indexOf('=') + 1);
    EXPECT_NE(requests[1].header("Content-Type"), request.header("Content-Type")) << "a new boundary each time";
    // A 44-byte WAV header (PCM, mono, 16 kHz, 16-bit, 6 bytes of data), then the samples little-endian.
    const QByteArray wav = QByteArray::fromHex("52494646" "2a000000" "57415645" "666d7420" "10000000" "0100"
                                               "0100" "803e0000" "007d0000" "0200" "1000" "64617461" "06000000"
                                               "0100" "feff" "3412");
    const QByteArray expected =
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"model\"\r\n\r\ngpt-4o-mini-transcribe\r\n"
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"response_format\"\r\n\r\njson\r\n"
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"prompt\"\r\n\r\n"
        + QStringLiteral(u"Un cours universitaire en français. (+ Korean)").toUtf8() + "\r\n"
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"audio.wav\"\r\n"
        "Content-Type: audio/wav\r\n\r\n" + wav + "\r\n--" + boundary + "--\r\n";
    EXPECT_EQ(request.body, expected);

    // Through the relay the session header takes the place of the key.
    EXPECT_EQ(requests[2].path, "/relay/openai/v1/audio/transcriptions");
    EXPECT_EQ(requests[2].header("x-quillet-session"), session);
    EXPECT_FALSE(requests[2].headers.contains("authorization"));
}

TEST_F(CloudSourceTest, WhatTheModelMakesUpNeverBecomesALine)
{
    auto mixed = uploader("ko-KR en-US zh-Hans ja-JP");
    const std::pair<const char *, const char *> answers[] = {
        {"한국어 대학 강의입니다. 가끔 영어 단어나 문장이 섞입니다. (+ English, Chinese, Japanese)", ""},   // the prompt
        {"시청해주셔서 감사합니다.", ""}, {"구독과 좋아요 부탁드립니다!", ""}, {"Thanks for watching!", ""},
        {"THANK YOU FOR WATCHING.", ""}, {"Please like and subscribe to the channel.", ""},
        {"Subtitles by the Amara community", ""}, {"MBC 뉴스 이덕영입니다.", ""},
        {"ご視聴ありがとうございました。", ""}, {"チャンネル登録お願いします。", ""},
        {"我们开始上课。字幕由Amara.org社区提供", "我们开始上课。"},
        {"Okay.", ""}, {"네", ""}, {"好的", ""},   // one word, or a scrap without a closing mark
        {"오늘은 미분을 배웁니다. Any questions so far?", "오늘은 미분을 배웁니다.\nAny questions so far?"},
        {"Any questions so far? 그럼 다음으로 넘어가겠습니다.", "그럼 다음으로 넘어가겠습니다."},   // a repeat
    };
    for (const auto &[answer, lines] : answers) {
        say(QString::fromUtf8(answer));
        mixed.upload(speech, QDateTime::currentDateTimeUtc());
        EXPECT_EQ(transcript->read(), QString::fromUtf8(lines)) << answer;
    }
    EXPECT_FALSE(transcript->problem()) << "a filtered answer is still a good answer";
}

TEST_F(CloudSourceTest, FailedUploadsAreWordedLoggedAndClearedByTheNextGoodAnswer)
{
    auto direct = uploader("en-US");
    auto impatient = uploader("en-US", false, 300ms);
    auto stalled = reply({});
    stalled.stall = true;
    const QString badKey = QStringLiteral(u"OpenAI 的 API key 无效：请在 设置 › AI 模型分配 里重新填写");
    const QString error200 = QStringLiteral(u"云端识别出错（200）");
    const QString none = QStringLiteral("none");
    // Each answer changes the trouble, so each row shows its own.
    const std::pair<TestServer::Response, QString> answers[] = {
        {reply(R"({"error":{"message":"bad key"}})", 401), badKey},
        {stalled, CloudUploader::cannotConnect()},
        {reply("{}", 429), QStringLiteral(u"OpenAI 额度不足或请求太频繁")},
        {reply(R"({"text":"Fine."})", 500), QStringLiteral(u"云端识别出错（500）")},
        {reply(R"({"result":"We start."})"), error200},
        {reply(R"({"text":""})"), none},
        {reply(R"({"text":42})"), error200},
        {reply("{}", 401), badKey},
        {reply(R"(["We start."])"), error200},
        {reply(QByteArray(Http::maxResponseBytes + 1, 'x')), CloudUploader::cannotConnect()},
        {reply("<html>Bad gateway</html>"), error200},
        {reply("{\"text\":\"caf\xc3", 503), QStringLiteral(u"云端识别出错（503）")},
        {reply("{\"text\":\"" + QByteArray(400, 'a') + "\"}"), none},
        {reply(QByteArray(4 * 1024 * 1024, '{')), error200},
        {reply(R"({"text":"We go on."})"), none},
    };
    for (const auto &[response, problem] : answers) {
        server.enqueue(response);
        (response.stall ? impatient : direct).upload(speech, QDateTime::currentDateTimeUtc());
        EXPECT_EQ(transcript->problem().value_or(none), problem) << response.body.left(40).constData();
    }
    EXPECT_EQ(transcript->read(), QStringLiteral("We go on.")) << "no failure gives a line";
    // The log keeps at most 300 bytes of each answer, and none that aren't UTF-8.
    const QStringList log = logged();
    EXPECT_TRUE(log.contains(QStringLiteral("HTTP 200: {\"text\":\"") + QString(291, u'a')));
    EXPECT_TRUE(log.contains(QStringLiteral("HTTP 503: ")));

    auto relayed = uploader("en-US", true);
    server.enqueue(reply(R"({"error":{"message":"signed out"}})", 401));
    relayed.upload(speech, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(transcript->problem(), QStringLiteral(u"Quillet 的 AI 服务暂时不可用")) << "401 through the relay";
}

TEST_F(CloudSourceTest, MakeSourceNeedsAMicrophoneThenSendsSpeechThroughTheRelayUntilItStops)
{
    Config config;
    config.recognizer = QStringLiteral("cloud");
    config.cloudModel.reset();
    config.lectureLanguage = QStringLiteral("Korean");
    config.extraLanguages = QStringList{QStringLiteral("English")};
    Keychain::remove(QStringLiteral("openai"));
    input->failure = QStringLiteral(u"找不到音频输入设备");
    EXPECT_EQ(makeSource(config, hub)->start(),
              QStringLiteral(u"没有麦克风权限：请在 设置 → 声音 → 输入 中选择麦克风并允许 Quillet Beta 使用"))
        << "through the relay no key is needed, but a microphone is";
    input->failure.reset();
    input->delivered = {48'000, 100'000};
    EXPECT_EQ(makeSource(config, hub)->start(), QStringLiteral(u"找不到可用的音频格式"));
    input->delivered = {48'000, 2};

    // The first answer comes late, so the second segment is still queued when the source stops.
    server.enqueue(reply(QStringLiteral(u"{\"text\":\"오늘은 극한을 정의합니다. 그다음 미분입니다.\"}").toUtf8(), 200,
                         300ms));
    say(QStringLiteral("Any questions so far?"));
    const auto cloud = makeSource(config, hub);
    ASSERT_EQ(cloud->start(), std::nullopt) << "Korean isn't recognised on the device: only the draft is lost";
    play(sound(0));
    play(sound());
    play(sound());
    play(sound(1.4, 1.5));
    ASSERT_TRUE(server.waitForRequests(1));
    cloud->stop();
    EXPECT_FALSE(hub.running());
    EXPECT_EQ(linesOf(*cloud, 3),
              QStringLiteral(u"오늘은 극한을 정의합니다.\n그다음 미분입니다.\nAny questions so far?"));
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
    EXPECT_TRUE(log.value(0).endsWith(QStringLiteral("→ skipped"))) << "a quiet segment isn't sent";
    EXPECT_TRUE(cut.matches(log.value(1)) && cut.matches(log.value(4))) << log.join(u'\n').toStdString();
    EXPECT_EQ(log.value(3), QStringLiteral(u"kept 2: 오늘은 극한을 정의합니다. / 그다음 미분입니다."));

    config.keySource = QStringLiteral("own");
    EXPECT_EQ(makeSource(config, hub)->start(),
              QStringLiteral(u"云端识别需要 OpenAI 的 API key：在 设置 › AI 模型分配 里填上"));
}

TEST_F(CloudSourceTest, TroubleAndTheDraftComeAndGoWhileTheSourceKeepsRunning)
{
    auto stalled = reply({});
    stalled.stall = true;
    server.enqueue(stalled);
    // Each answer after the stall comes late, so the test sees the trouble before it changes.
    server.enqueue(reply("<html>oops</html>", 502, 200ms));
    server.enqueue(reply(QStringLiteral(u"{\"text\":\"오늘은 극한을 정의하겠습니다.\"}").toUtf8(), 200, 200ms));
    CloudSource cloud({QStringLiteral("gpt-4o-transcribe"), {korean}, false, 500ms}, hub,
                      recognizers.factory(), clock);
    ASSERT_EQ(cloud.start(), std::nullopt);
    ScriptedRecognizer &local = *recognizers.made.value(korean);
    const QString first = QStringLiteral(u"오늘은 극한을 정의합니다.");
    local.say(first, true);
    local.say(QStringLiteral(u"그다음"), false);
    ASSERT_TRUE(local.waitUntilHeard());
    EXPECT_EQ(cloud.draft(), first + QStringLiteral(u" 그다음"));
    EXPECT_EQ(cloud.read(), QString()) << "local sentences never become lines";

    clock->advance(5s);
    const auto sentence = sound();
    QElapsedTimer playing;
    playing.start();
    for (int i = 0; i < 3; ++i)
        play(sentence);
    EXPECT_LT(playing.elapsed(), 400 * timeScale) << "the audio thread never waits for an upload";
    ASSERT_TRUE(runEventsUntil([&] { return cloud.problem() == CloudUploader::cannotConnect(); }));
    ASSERT_TRUE(runEventsUntil([&] { return cloud.problem() == QStringLiteral(u"云端识别出错（502）"); }));
    EXPECT_EQ(linesOf(cloud), QStringLiteral(u"오늘은 극한을 정의하겠습니다."));
    EXPECT_FALSE(cloud.problem());
    EXPECT_EQ(cloud.draft(), QStringLiteral(u"그다음")) << "the covered sentence left from the front";
    EXPECT_EQ(server.requests().size(), 3);
    EXPECT_EQ(server.requests().value(2).header("Authorization"), "Bearer sk-test");

    clock->advance(10s);
    const QString later = QStringLiteral(u"변화율을 재는 것입니다.");
    local.say(later, true);
    ASSERT_TRUE(local.waitUntilHeard());
    EXPECT_EQ(cloud.draft(), later) << "heard after the covered stretch";
}

} // namespace
