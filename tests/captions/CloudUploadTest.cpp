#include "captions/CloudUploader.h"

#include "CloudFixture.h"

using namespace std::chrono_literals;

namespace {

const std::vector<qint16> speech{1, -2, 0x1234};

QStringList locales(const char *ids)
{
    return QString::fromLatin1(ids).split(u' ', Qt::SkipEmptyParts);
}

class CloudUploadTest : public CloudFixture
{
protected:
    CloudUploader uploader(const char *ids, bool viaRelay = false, std::chrono::milliseconds timeout = 5s)
    {
        const QString prompt = CloudRequest::prompt(locales(ids));
        return CloudUploader(CloudRequest({QStringLiteral("gpt-4o-mini-transcribe"), prompt, viaRelay,
                                           QStringLiteral("sk-test"), timeout}),
                             CloudFilter(locales(ids), prompt), transcript);
    }
    // Uploads one segment answered with text: the final lines it gave.
    QString heard(CloudUploader &uploader, const QString &text)
    {
        say(text);
        uploader.upload(speech, QDateTime::currentDateTimeUtc());
        return transcript->read();
    }

    std::shared_ptr<CloudTranscript> transcript = std::make_shared<CloudTranscript>();
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

TEST_F(CloudUploadTest, SendsEachSegmentAsAMultipartPostByteForByte)
{
    auto direct = uploader("fr-FR ko-KR");
    auto relayed = uploader("en-US", true);
    for (const char *text : {"Bonjour à tous.", "Alors, on continue avec les limites.", "We begin with limits."})
        say(QString::fromUtf8(text));
    for (CloudUploader *sender : {&direct, &direct, &relayed})
        sender->upload(speech, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(transcript->read(),
              QStringLiteral(u"Bonjour à tous.\nAlors, on continue avec les limites.\nWe begin with limits."));

    const QList<TestServer::Request> requests = server.requests();
    ASSERT_EQ(requests.size(), 3);
    const TestServer::Request &request = requests[0];
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/v1/audio/transcriptions");
    EXPECT_EQ(request.header("Authorization"), "Bearer sk-test");
    static const Text::Regex type(QStringLiteral("^multipart/form-data; boundary=(Quillet-[0-9a-f]{8}-[0-9a-f]{4}-"
                                                 "[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12})$"));
    const auto match = type.first(QString::fromLatin1(request.header("Content-Type")));
    ASSERT_TRUE(match) << request.header("Content-Type").constData();
    const QByteArray boundary = match->groups.value(0).toLatin1();
    EXPECT_NE(requests[1].header("Content-Type"), request.header("Content-Type")) << "a new boundary each time";
    // A 44-byte WAV header (PCM, mono, 16 kHz, 16-bit, 6 bytes of data), then the samples little-endian.
    const QByteArray wav = QByteArray::fromHex("52494646" "2a000000" "57415645" "666d7420" "10000000" "0100" "0100"
                                               "803e0000" "007d0000" "0200" "1000" "64617461" "06000000"
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

TEST_F(CloudUploadTest, WhatTheModelMakesUpNeverBecomesALine)
{
    auto mixed = uploader("ko-KR en-US zh-Hans ja-JP");
    EXPECT_EQ(heard(mixed, CloudRequest::prompt(locales("ko-KR en-US zh-Hans ja-JP"))), QString())
        << "the prompt repeated, sentence by sentence";
    const std::pair<const char *, const char *> answers[] = {
        {"시청해주셔서 감사합니다.", ""}, {"구독과 좋아요 부탁드립니다!", ""}, {"Thanks for watching!", ""},
        {"THANK YOU FOR WATCHING.", ""}, {"Please like and subscribe to the channel.", ""},
        {"Subtitles by the Amara community", ""}, {"MBC 뉴스 이덕영입니다.", ""},
        {"ご視聴ありがとうございました。", ""}, {"チャンネル登録お願いします。", ""},
        {"我们开始上课。字幕由Amara.org社区提供", "我们开始上课。"},
        {"Okay.", ""}, {"네", ""}, {"好的", ""},   // one word, or a scrap without a closing mark
        {"오늘은 미분을 배웁니다. Any questions so far?", "오늘은 미분을 배웁니다.\nAny questions so far?"},
        {"Any questions so far? 그럼 다음으로 넘어가겠습니다.", "그럼 다음으로 넘어가겠습니다."},   // a repeat
    };
    for (const auto &[answer, lines] : answers)
        EXPECT_EQ(heard(mixed, QString::fromUtf8(answer)), QString::fromUtf8(lines)) << answer;
    EXPECT_FALSE(transcript->problem()) << "a filtered answer is still a good answer";
}

TEST_F(CloudUploadTest, FailuresAreWordedLoggedAndClearedByTheNextGoodAnswer)
{
    auto direct = uploader("en-US");
    {
        const TestServer gone;
        QSettings().setValue(QStringLiteral("speech.url"), gone.url());
    }
    direct.upload(speech, QDateTime::currentDateTimeUtc());
    EXPECT_EQ(transcript->problem(), CloudUploader::cannotConnect()) << "nothing listens";
    QSettings().setValue(QStringLiteral("speech.url"), server.url());

    auto impatient = uploader("en-US", false, 300ms);
    TestServer::Response stalled;
    stalled.stall = true;
    const auto reply = [](const QByteArray &body, int status) { return TestServer::Response::json(body, status); };
    const QString badKey = QStringLiteral(u"OpenAI 的 API key 无效：请在 设置 › AI 模型分配 里重新填写");
    const QString error200 = QStringLiteral(u"云端识别出错（200）");
    const QString none = QStringLiteral("none");
    const QByteArray longText = "{\"text\":\"" + QByteArray(400, 'a') + "\"}";
    // Each answer changes the trouble, so each row shows its own.
    const std::pair<TestServer::Response, QString> answers[] = {
        {reply(R"({"error":{"message":"bad key"}})", 401), badKey},
        {stalled, CloudUploader::cannotConnect()},
        {reply("{}", 429), QStringLiteral(u"OpenAI 额度不足或请求太频繁")},
        {reply(R"({"text":"Fine."})", 500), QStringLiteral(u"云端识别出错（500）")},
        {reply(R"({"result":"We start."})", 200), error200},
        {reply(R"({"text":""})", 200), none},
        {reply(R"({"text":42})", 200), error200},
        {reply("{}", 401), badKey},
        {reply(R"(["We start."])", 200), error200},
        {reply(QByteArray(Http::maxResponseBytes + 1, 'x'), 200), CloudUploader::cannotConnect()},
        {reply("<html>Bad gateway</html>", 200), error200},
        {reply("{\"text\":\"caf\xc3", 503), QStringLiteral(u"云端识别出错（503）")},
        {reply(longText, 200), none},
        {reply(QByteArray(4 * 1024 * 1024, '{'), 200), error200},
        {reply(R"({"text":"We go on."})", 200), none},
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

} // namespace
