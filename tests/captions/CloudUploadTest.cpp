#include "captions/CloudUploader.h"

#include "CloudFixture.h"
#include "text/Regex.h"

#include <QSettings>

#include <vector>

using namespace std::chrono_literals;

namespace {

const QDateTime cutTime(QDate(2026, 3, 2), QTime(9, 0), Qt::UTC);
const std::vector<qint16> speech{1, -2, 0x1234};

class CloudUploadTest : public CloudFixture
{
protected:
    CloudUploader uploader(QStringList locales, bool viaRelay = false, std::chrono::milliseconds timeout = 5s)
    {
        const QString prompt = CloudRequest::prompt(locales);
        return CloudUploader(CloudRequest({QStringLiteral("gpt-4o-mini-transcribe"), prompt, viaRelay,
                                           QStringLiteral("sk-test"), timeout}),
                             CloudFilter(std::move(locales), prompt), transcript);
    }
    // Uploads one segment answered with text; the final lines it gave.
    QString heard(CloudUploader &uploader, const QString &text)
    {
        say(text);
        uploader.upload(speech, cutTime);
        return transcript->read();
    }

    std::shared_ptr<CloudTranscript> transcript = std::make_shared<CloudTranscript>();
    const QStringList english{QStringLiteral("en-US")};
};

QByteArray boundaryOf(const TestServer::Request &request)
{
    static const Text::Regex type(QStringLiteral("^multipart/form-data; boundary=(Quillet-[0-9a-f]{8}-[0-9a-f]{4}-"
                                                 "[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12})$"));
    const auto match = type.first(QString::fromLatin1(request.header("Content-Type")));
    return match ? match->groups.value(0).toLatin1() : QByteArray();
}

TEST(CloudRequestTest, WavIsA44ByteHeaderThenTheSamplesLittleEndian)
{
    const QByteArray expected = QByteArray::fromHex("52494646" "2a000000" "57415645" "666d7420" "10000000" "0100" "0100"
                                                    "803e0000" "007d0000" "0200" "1000" "64617461" "06000000"
                                                    "0100" "feff" "3412");
    EXPECT_EQ(CloudRequest::wav(speech).toHex(), expected.toHex());
    const QByteArray empty = CloudRequest::wav({}, 8'000);
    EXPECT_EQ(empty.size(), 44);
    EXPECT_EQ(empty.mid(4, 4).toHex(), "24000000");
    EXPECT_EQ(empty.mid(24, 8).toHex(), "401f0000803e0000") << "the rate and bytes per second";
}

TEST(CloudRequestTest, PromptIsTheLectureSampleNamingTheExtraLanguagesInEnglish)
{
    EXPECT_EQ(CloudRequest::prompt({QStringLiteral("ko-KR"), QStringLiteral("en-US")}),
              QStringLiteral(u"한국어 대학 강의입니다. 가끔 영어 단어나 문장이 섞입니다. (+ English)"));
    EXPECT_EQ(CloudRequest::prompt({QStringLiteral("zh-Hans"), QStringLiteral("ja-JP"), QStringLiteral("xx"),
                                    QStringLiteral("fr-FR")}),
              QStringLiteral(u"这是一堂中文大学课程。 (+ Japanese, French)"))
        << "a code that names no language is left out";
    EXPECT_EQ(CloudRequest::prompt({QStringLiteral("de-DE")}), QStringLiteral(u"Eine Universitätsvorlesung auf Deutsch."));
    EXPECT_EQ(CloudRequest::prompt({QStringLiteral("ja-JP"), QStringLiteral("xx")}),
              QStringLiteral(u"日本語の大学の講義です。"));
    EXPECT_EQ(CloudRequest::prompt({QStringLiteral("es-ES"), QStringLiteral("en-US")}), QStringLiteral("University lecture."))
        << "no sample: the extras aren't mentioned";
    EXPECT_EQ(CloudRequest::prompt({}), QStringLiteral("University lecture."));
}

TEST_F(CloudUploadTest, SendsTheSegmentAsAMultipartPostByteForByte)
{
    auto direct = uploader({QStringLiteral("fr-FR"), QStringLiteral("ko-KR")});
    say(QStringLiteral("Bonjour à tous."));
    say(QStringLiteral("Alors, on continue avec les limites."));
    direct.upload(speech, cutTime);
    direct.upload(speech, cutTime);

    const QList<TestServer::Request> requests = server.requests();
    ASSERT_EQ(requests.size(), 2);
    const TestServer::Request &request = requests[0];
    EXPECT_EQ(request.method, "POST");
    EXPECT_EQ(request.path, "/v1/audio/transcriptions");
    EXPECT_EQ(request.header("Authorization"), "Bearer sk-test");
    const QByteArray boundary = boundaryOf(request);
    ASSERT_FALSE(boundary.isEmpty()) << request.header("Content-Type").constData();
    EXPECT_NE(boundaryOf(requests[1]), boundary) << "a new boundary for each request";

    const QByteArray expected =
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"model\"\r\n\r\ngpt-4o-mini-transcribe\r\n"
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"response_format\"\r\n\r\njson\r\n"
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"prompt\"\r\n\r\n"
        + QStringLiteral(u"Un cours universitaire en français. (+ Korean)").toUtf8() + "\r\n"
        "--" + boundary + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"audio.wav\"\r\n"
        "Content-Type: audio/wav\r\n\r\n" + CloudRequest::wav(speech) + "\r\n--" + boundary + "--\r\n";
    EXPECT_EQ(request.body, expected);
    EXPECT_EQ(transcript->read(), QStringLiteral(u"Bonjour à tous.\nAlors, on continue avec les limites."));
}

TEST_F(CloudUploadTest, ThroughTheRelayTheSessionHeaderTakesThePlaceOfTheKey)
{
    auto relayed = uploader(english, true);
    EXPECT_EQ(heard(relayed, QStringLiteral("We begin with limits.")), QStringLiteral("We begin with limits."));
    const TestServer::Request request = server.requests().value(0);
    EXPECT_EQ(request.path, "/relay/openai/v1/audio/transcriptions");
    EXPECT_EQ(request.header("x-quillet-session"), session);
    EXPECT_FALSE(request.headers.contains("authorization"));
    EXPECT_FALSE(boundaryOf(request).isEmpty());
}

TEST_F(CloudUploadTest, WhatTheModelMakesUpNeverBecomesALine)
{
    auto korean = uploader({QStringLiteral("ko-KR"), QStringLiteral("en-US")});
    const QString prompt = CloudRequest::prompt({QStringLiteral("ko-KR"), QStringLiteral("en-US")});
    EXPECT_EQ(heard(korean, prompt), QString()) << "the prompt repeated, sentence by sentence";
    for (const char *made : {"시청해주셔서 감사합니다.", "구독과 좋아요 부탁드립니다!", "Thanks for watching!",
                             "THANK YOU FOR WATCHING.", "Please like and subscribe to the channel.",
                             "Subtitles by the Amara community", "MBC 뉴스 이덕영입니다."})
        EXPECT_EQ(heard(korean, QString::fromUtf8(made)), QString()) << made;
    EXPECT_FALSE(transcript->problem()) << "a filtered answer is still a good answer";

    EXPECT_EQ(heard(korean, QStringLiteral("Okay.")), QString()) << "a one-word answer is no sentence";
    EXPECT_EQ(heard(korean, QStringLiteral(u"네")), QString());
    EXPECT_EQ(heard(korean, QStringLiteral(u"오늘은 미분을 배웁니다. Any questions so far?")),
              QStringLiteral(u"오늘은 미분을 배웁니다.\nAny questions so far?"));
    EXPECT_EQ(heard(korean, QStringLiteral(u"Any questions so far? 그럼 다음으로 넘어가겠습니다.")),
              QStringLiteral(u"그럼 다음으로 넘어가겠습니다.")) << "a repeat across segments is dropped";

    auto chinese = uploader({QStringLiteral("zh-Hans")});
    EXPECT_EQ(heard(chinese, QStringLiteral(u"我们开始上课。字幕由Amara.org社区提供")), QStringLiteral(u"我们开始上课。"));
    EXPECT_EQ(heard(chinese, QStringLiteral(u"好的")), QString()) << "a short scrap without a closing mark";

    auto japanese = uploader({QStringLiteral("ja-JP")});
    EXPECT_EQ(heard(japanese, QStringLiteral(u"ご視聴ありがとうございました。")), QString());
    EXPECT_EQ(heard(japanese, QStringLiteral(u"チャンネル登録お願いします。")), QString());
}

TEST_F(CloudUploadTest, FailuresAreWordedAndTheNextGoodAnswerClearsThem)
{
    auto direct = uploader(english);
    const auto problemAfter = [&](const QByteArray &body, int status) {
        answer(body, status);
        direct.upload(speech, cutTime);
        return transcript->problem().value_or(QStringLiteral("none"));
    };
    const QString error200 = QStringLiteral(u"云端识别出错（200）");
    EXPECT_EQ(problemAfter(R"({"error":{"message":"bad key"}})", 401),
              QStringLiteral(u"OpenAI 的 API key 无效：请在 设置 › AI 模型分配 里重新填写"));
    EXPECT_EQ(problemAfter("{}", 429), QStringLiteral(u"OpenAI 额度不足或请求太频繁"));
    EXPECT_EQ(problemAfter(R"({"text":"Fine."})", 500), QStringLiteral(u"云端识别出错（500）"));
    EXPECT_EQ(problemAfter(R"({"result":"We start."})", 200), error200) << "200 without text";
    EXPECT_EQ(problemAfter(R"({"text":42})", 200), error200) << "a text that isn't text";
    EXPECT_EQ(problemAfter(R"(["We start."])", 200), error200);
    EXPECT_EQ(problemAfter("<html>Bad gateway</html>", 200), error200);
    EXPECT_EQ(problemAfter(QByteArray(4 * 1024 * 1024, '{'), 200), error200) << "an enormous body";
    EXPECT_EQ(problemAfter(QByteArray(Http::maxResponseBytes + 1, 'x'), 200), CloudUploader::cannotConnect())
        << "too big to read counts as no answer";
    EXPECT_EQ(transcript->read(), QString()) << "no failure gives a line";

    TestServer::Response stalled;
    stalled.stall = true;
    server.enqueue(stalled);
    auto impatient = uploader(english, false, 300ms);
    impatient.upload(speech, cutTime);
    EXPECT_EQ(transcript->problem(), CloudUploader::cannotConnect()) << "the time-out";

    {
        const TestServer gone;
        QSettings().setValue(QStringLiteral("speech.url"), gone.url());
    }
    direct.upload(speech, cutTime);
    EXPECT_EQ(transcript->problem(), CloudUploader::cannotConnect()) << "nothing listens";
    QSettings().setValue(QStringLiteral("speech.url"), server.url());

    EXPECT_EQ(problemAfter(R"({"text":""})", 200), QStringLiteral("none")) << "an empty text is a good answer";
    EXPECT_EQ(problemAfter("{}", 401), QStringLiteral(u"OpenAI 的 API key 无效：请在 设置 › AI 模型分配 里重新填写"));
    EXPECT_EQ(problemAfter(R"({"text":"We go on."})", 200), QStringLiteral("none"));
    EXPECT_EQ(transcript->read(), QStringLiteral("We go on."));

    auto relayed = uploader(english, true);
    answer(R"({"error":{"message":"signed out"}})", 401);
    relayed.upload(speech, cutTime);
    EXPECT_EQ(transcript->problem(), QStringLiteral(u"Quillet 的 AI 服务暂时不可用"));
}

TEST_F(CloudUploadTest, LogsEachAnswerAndWhatWasKept)
{
    auto direct = uploader(english);
    heard(direct, QStringLiteral("Thanks for watching! First, the limit. Then the derivative."));
    answer("{\"text\":\"caf\xc3", 503);
    direct.upload(speech, cutTime);
    answer(QByteArray("{\"text\":\"") + QByteArray(400, 'a') + "\"}", 200);
    direct.upload(speech, cutTime);

    const QStringList lines = logLines();
    ASSERT_EQ(lines.size(), 5) << lines.join(u'\n').toStdString();
    static const Text::Regex stamp(QStringLiteral("^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ $"));
    for (const QString &line : lines)
        EXPECT_TRUE(stamp.matches(line.left(21))) << line.toStdString();
    EXPECT_EQ(lines[0].mid(21), QStringLiteral(R"(HTTP 200: {"text":"Thanks for watching! First, the limit. Then the derivative."})"));
    EXPECT_EQ(lines[1].mid(21), QStringLiteral("kept 2: First, the limit. / Then the derivative."));
    EXPECT_EQ(lines[2].mid(21), QStringLiteral("HTTP 503: ")) << "bytes that aren't UTF-8 are left out";
    EXPECT_EQ(lines[3].mid(21), QStringLiteral("HTTP 200: {\"text\":\"") + QString(291, u'a'));
    EXPECT_EQ(lines[4].mid(21), QStringLiteral("kept 0: "));
}

} // namespace
