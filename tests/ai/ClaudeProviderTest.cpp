#include "ai/ClaudeProvider.h"
#include "platform/Keychain.h"

#include "VendorTest.h"

namespace {

class ClaudeTest : public VendorTest
{
protected:
    static ClaudeProvider direct(const QString &model, const QString &effort = QStringLiteral("high"))
    {
        return ClaudeProvider({.key = QStringLiteral("sk-ant-1"), .model = model, .effort = effort});
    }
};

} // namespace

TEST_F(ClaudeTest, HaikuGetsTheBareBodyAndNoBetaHeader)
{
    answer(R"JSON({"content": [{"type": "text", "text": "Hi there"}], "stop_reason": "end_turn"})JSON");
    const auto reply = direct(QStringLiteral("claude-haiku-4-5")).chat(QStringLiteral("Be brief."), {user(QStringLiteral("你好"))});
    EXPECT_EQ(reply, QStringLiteral("Hi there"));

    const TestServer::Request request = onlyRequest();
    EXPECT_EQ(request.path, "/v1/messages");
    EXPECT_EQ(request.header("content-type"), "application/json");
    EXPECT_EQ(request.header("x-api-key"), "sk-ant-1");
    EXPECT_EQ(request.header("anthropic-version"), "2023-06-01");
    EXPECT_FALSE(request.headers.contains("anthropic-beta"));
    EXPECT_FALSE(request.headers.contains("x-quillet-session"));
    EXPECT_EQ(onlyBody(), object(R"JSON({"model": "claude-haiku-4-5", "max_tokens": 4000, "system": "Be brief.",
        "messages": [{"role": "user", "content": "你好"}]})JSON"));
}

TEST_F(ClaudeTest, OtherModelsThroughTheRelayCarryEffortFallbackAndSessionHeader)
{
    ASSERT_TRUE(Keychain::set(QStringLiteral("quillet-session"), QStringLiteral("session-9")));
    answer(R"JSON({"content": [{"type": "text", "text": "ok"}]})JSON");
    const ClaudeProvider relayed({.model = QStringLiteral("claude-sonnet-5-5"), .effort = QStringLiteral("low"), .viaRelay = true});
    EXPECT_EQ(relayed.chat(QStringLiteral("S"), {user(QStringLiteral("q")), assistant(QStringLiteral("a"))}), QStringLiteral("ok"));

    const TestServer::Request request = onlyRequest();
    EXPECT_EQ(request.path, "/relay/anthropic/v1/messages");
    EXPECT_EQ(request.header("x-quillet-session"), "session-9");
    EXPECT_EQ(request.header("anthropic-version"), "2023-06-01");
    EXPECT_EQ(request.header("anthropic-beta"), "server-side-fallback-2026-07-01");
    EXPECT_FALSE(request.headers.contains("x-api-key"));
    EXPECT_EQ(onlyBody(), object(R"JSON({"model": "claude-sonnet-5-5", "max_tokens": 4000, "system": "S",
        "messages": [{"role": "user", "content": "q"}, {"role": "assistant", "content": "a"}],
        "output_config": {"effort": "low"}, "fallbacks": "default"})JSON"));

    // Signed out: no session header and still no key header.
    Keychain::remove(QStringLiteral("quillet-session"));
    relayed.chat(QStringLiteral("S"), {user(QStringLiteral("q"))});
    const TestServer::Request signedOut = server.requests().last();
    EXPECT_FALSE(signedOut.headers.contains("x-quillet-session"));
    EXPECT_FALSE(signedOut.headers.contains("x-api-key"));
}

TEST_F(ClaudeTest, AttachmentsComeFirstInOrderThenTheText)
{
    const QList<Turn> turns{
        user(QStringLiteral("What is on the slide?"),
             {file(QStringLiteral("board.png"), QStringLiteral("image/png"), "PNG"),
              file(QStringLiteral("Slides.PDF"), QStringLiteral("application/pdf"), "%PDF"),
              file(QStringLiteral("data.json"), QStringLiteral("application/json"), R"({"a":1})")}),
        assistant(QStringLiteral("A graph."), {file(QStringLiteral("n.txt"), QStringLiteral("text/plain"), "\xff")}),
        user(QStringLiteral("Thanks"), {}),
    };
    direct(QStringLiteral("claude-opus-5-5")).chat(QStringLiteral("S"), turns);
    EXPECT_EQ(onlyBody().value(u"messages"), object(R"JSON({"m": [
        {"role": "user", "content": [
            {"type": "image", "source": {"type": "base64", "media_type": "image/png", "data": "UE5H"}},
            {"type": "document", "source": {"type": "base64", "media_type": "application/pdf", "data": "JVBERg=="}},
            {"type": "text", "text": "【文件：data.json】\n{\"a\":1}"},
            {"type": "text", "text": "What is on the slide?"}]},
        {"role": "assistant", "content": [
            {"type": "text", "text": "【文件：n.txt】\n\uFFFD"},
            {"type": "text", "text": "A graph."}]},
        {"role": "user", "content": "Thanks"}]})JSON").value(u"m"));
}

TEST_F(ClaudeTest, RepliesKeepOnlyTextBlocksAndRefusalsAreAbsent)
{
    const auto read = [](const char *json) { return ClaudeProvider::readReply(object(json)); };
    EXPECT_EQ(read(R"JSON({"content": [{"type": "thinking", "thinking": "hmm", "signature": "x"},
        {"type": "text", "text": "Answer"}]})JSON"), QStringLiteral("Answer"));
    EXPECT_EQ(read(R"JSON({"content": [{"type": "text", "text": " one "}, {"type": "tool_use", "text": "no"},
        {"type": "text", "text": 5}, {"type": "text", "text": "two\n"}]})JSON"), QStringLiteral(" one two\n"));
    EXPECT_EQ(read(R"JSON({"stop_reason": "refusal", "content": [{"type": "text", "text": "I can't"}]})JSON"), std::nullopt);
    EXPECT_EQ(read(R"JSON({"stop_reason": ["refusal"], "content": []})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"content": "text"})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"content": [{"type": "text", "text": "a"}, "stray"]})JSON"), QString());
    EXPECT_EQ(read("{}"), QString());

    // Through the wire: a refusal is the only absent result; an empty 200 body is empty text.
    answer(R"JSON({"stop_reason": "refusal", "content": []})JSON");
    answer("");
    const ClaudeProvider claude = direct(QStringLiteral("claude-opus-5-5"));
    EXPECT_EQ(claude.chat({}, {user(QStringLiteral("x"))}), std::nullopt);
    EXPECT_EQ(claude.chat({}, {user(QStringLiteral("x"))}), QString());
}
