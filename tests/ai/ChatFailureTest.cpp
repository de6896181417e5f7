#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"

#include "VendorTest.h"

#include <QElapsedTimer>
#include <QSettings>

#include <functional>
#include <memory>

using namespace std::chrono_literals;

namespace {

struct Vendor
{
    const char *name;
    std::function<std::unique_ptr<AIProvider>(std::chrono::milliseconds timeout)> make;
};

void PrintTo(const Vendor &vendor, std::ostream *out)
{
    *out << vendor.name;
}

class ChatFailureTest : public VendorTest, public ::testing::WithParamInterface<Vendor>
{
protected:
    std::optional<QString> chat(std::chrono::milliseconds timeout = 10s) const
    {
        return GetParam().make(timeout)->chat(QStringLiteral("S"), {user(QStringLiteral("Q"))});
    }
    QString name() const { return QString::fromLatin1(GetParam().name); }
};

} // namespace

TEST_P(ChatFailureTest, StatusesAreWordedWithTheVendorsName)
{
    answer(R"JSON({"error": {"message": "invalid x-api-key"}})JSON", 401);
    answer("", 403);
    answer(R"JSON({"error": {"type": "rate_limit_error", "message": "Too many"}})JSON", 429);
    answer(R"JSON({"error": {"message": "Overloaded"}})JSON", 500);
    TestServer::Response page = TestServer::Response::json("<html><h1>502 Bad Gateway</h1></html>", 500);
    page.contentType = "text/html";
    server.enqueue(page);
    answer(R"JSON({"error": {"message": ")JSON" + QByteArray(200, 'm') + R"JSON("}})JSON", 400);
    answer(R"JSON({"error": {"message": 42}})JSON", 404);
    answer(R"JSON({"error": "plain text error"})JSON", 503);

    const QString invalidKey = QStringLiteral("（") + name() + QStringLiteral(" 的 API key 无效，请在设置里重新填写）");
    EXPECT_EQ(chat(), invalidKey);
    EXPECT_EQ(chat(), invalidKey);
    EXPECT_EQ(chat(), QStringLiteral("（") + name() + QStringLiteral(" 请求太频繁或额度不足，稍后再试）"));
    EXPECT_EQ(chat(), QStringLiteral("（") + name() + QStringLiteral(" 出错 500：Overloaded）"));
    EXPECT_EQ(chat(), QStringLiteral("（") + name() + QStringLiteral(" 出错 500）"));
    EXPECT_EQ(chat(), QStringLiteral("（") + name() + QStringLiteral(" 出错 400：") + QString(80, u'm') + QStringLiteral("）"));
    EXPECT_EQ(chat(), QStringLiteral("（") + name() + QStringLiteral(" 出错 404）"));
    EXPECT_EQ(chat(), QStringLiteral("（") + name() + QStringLiteral(" 出错 503）"));
}

TEST_P(ChatFailureTest, NoAnswerIsTheCannotConnectText)
{
    const QString cannotConnect = QStringLiteral("（连不上 ") + name() + QStringLiteral("，检查网络）");
    QElapsedTimer timer;
    timer.start();

    TestServer::Response stall;
    stall.stall = true;
    server.enqueue(stall);
    EXPECT_EQ(chat(300ms), cannotConnect);
    EXPECT_EQ(server.requests().size(), 1);  // never retried

    const QString closed = [] {
        const TestServer gone;
        return gone.url();
    }();
    QSettings settings;
    for (const char *key : {"ai.claude.url", "ai.openai.url", "ai.gemini.url"})
        settings.setValue(QString::fromLatin1(key), closed);
    EXPECT_EQ(chat(), cannotConnect);
    EXPECT_LT(timer.elapsed(), 5000);
}

INSTANTIATE_TEST_SUITE_P(
    Vendors, ChatFailureTest,
    ::testing::Values(
        Vendor{"Claude",
               [](std::chrono::milliseconds timeout) {
                   return std::make_unique<ClaudeProvider>(ClaudeProvider::Settings{
                       .key = QStringLiteral("k"), .model = QStringLiteral("claude-opus-5-5"),
                       .effort = QStringLiteral("low"), .timeout = timeout});
               }},
        Vendor{"ChatGPT",
               [](std::chrono::milliseconds timeout) {
                   return std::make_unique<OpenAIProvider>(OpenAIProvider::Settings{
                       .key = QStringLiteral("k"), .model = QStringLiteral("gpt-5"), .timeout = timeout});
               }},
        Vendor{"Gemini",
               [](std::chrono::milliseconds timeout) {
                   return std::make_unique<GeminiProvider>(GeminiProvider::Settings{
                       .key = QStringLiteral("k"), .model = QStringLiteral("gemini-2.5-pro"), .timeout = timeout});
               }}),
    [](const ::testing::TestParamInfo<Vendor> &info) { return std::string(info.param.name); });

TEST_F(VendorTest, ErrorMessagesAreCutAtEightyCharacters)
{
    // 200 user-perceived characters of two code points each: the cut counts characters.
    QString accented;
    for (int i = 0; i < 200; ++i)
        accented += QStringLiteral("e\u0301");
    answer(R"JSON({"error": {"message": ")JSON" + accented.toUtf8() + R"JSON("}})JSON", 400);
    const ClaudeProvider claude({.key = QStringLiteral("k"), .model = QStringLiteral("claude-haiku-4-5")});
    EXPECT_EQ(claude.chat({}, {user(QStringLiteral("Q"))}),
              QStringLiteral("（Claude 出错 400：") + accented.left(160) + QStringLiteral("）"));

    // Through the relay an invalid session reads like an invalid key.
    answer("{}", 401);
    const OpenAIProvider relayed({.model = QStringLiteral("gpt-5"), .viaRelay = true});
    EXPECT_EQ(relayed.chat({}, {user(QStringLiteral("Q"))}), QStringLiteral("（ChatGPT 的 API key 无效，请在设置里重新填写）"));
}

TEST_F(VendorTest, BrokenBodiesOverTheWireGiveEmptyText)
{
    QByteArray huge = R"JSON({"pad": ")JSON" + QByteArray(30'000'000, 'p')
        + R"JSON(", "content": [{"type": "text", "text": "still read"}],
        "output": [{"content": [{"type": "output_text", "text": "still read"}]}],
        "candidates": [{"content": {"parts": [{"text": "still read"}]}}]})JSON";
    const QList<QByteArray> bodies{"", "null", "[]", "\"text\"", "{\"content\": [", QByteArray(100'000, '['),
                                   QByteArray("\x00\xff\xfe{}", 5), "{\"content\": {\"text\": 1}}"};
    const QList<std::shared_ptr<AIProvider>> providers{
        std::make_shared<ClaudeProvider>(ClaudeProvider::Settings{.key = QStringLiteral("k"), .model = QStringLiteral("claude-opus-5-5")}),
        std::make_shared<OpenAIProvider>(OpenAIProvider::Settings{.key = QStringLiteral("k"), .model = QStringLiteral("gpt-5")}),
        std::make_shared<GeminiProvider>(GeminiProvider::Settings{.key = QStringLiteral("k"), .model = QStringLiteral("gemini-2.5-pro")})};
    for (const auto &provider : providers) {
        for (const QByteArray &body : bodies) {
            answer(body);
            EXPECT_EQ(provider->chat({}, {user(QStringLiteral("Q"))}), QString()) << body.left(40).toStdString();
        }
        answer(huge);
        EXPECT_EQ(provider->chat({}, {user(QStringLiteral("Q"))}), QStringLiteral("still read"));
    }
}
