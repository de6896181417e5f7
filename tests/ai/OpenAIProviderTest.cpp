#include "ai/OpenAIProvider.h"
#include "platform/Keychain.h"

#include "VendorTest.h"

namespace {

class OpenAITest : public VendorTest
{
protected:
    static OpenAIProvider direct(std::optional<QString> reasoningEffort = std::nullopt)
    {
        return OpenAIProvider({.key = QStringLiteral("sk-oa"), .model = QStringLiteral("gpt-5"),
                               .reasoningEffort = std::move(reasoningEffort)});
    }
};

} // namespace

TEST_F(OpenAITest, DirectWithoutReasoningSendsNoReasoningMember)
{
    answer(R"JSON({"output": [{"type": "message", "content": [{"type": "output_text", "text": "Yes"}]}]})JSON");
    EXPECT_EQ(direct().chat(QStringLiteral("Sys"), {user(QStringLiteral("Q")), assistant(QStringLiteral("A"))}),
              QStringLiteral("Yes"));

    const TestServer::Request request = onlyRequest();
    EXPECT_EQ(request.path, "/v1/responses");
    EXPECT_EQ(request.header("authorization"), "Bearer sk-oa");
    EXPECT_EQ(request.header("content-type"), "application/json");
    EXPECT_FALSE(request.headers.contains("x-quillet-session"));
    EXPECT_EQ(onlyBody(), object(R"JSON({"model": "gpt-5", "instructions": "Sys",
        "input": [{"role": "user", "content": "Q"}, {"role": "assistant", "content": "A"}]})JSON"));
}

TEST_F(OpenAITest, ThroughTheRelayWithReasoningEffort)
{
    ASSERT_TRUE(Keychain::set(QStringLiteral("quillet-session"), QStringLiteral("tok")));
    const OpenAIProvider relayed({.model = QStringLiteral("gpt-5-mini"), .reasoningEffort = QStringLiteral("minimal"),
                                  .viaRelay = true});
    relayed.chat(QStringLiteral("S"), {user(QStringLiteral("Q"))});

    const TestServer::Request request = onlyRequest();
    EXPECT_EQ(request.path, "/relay/openai/v1/responses");
    EXPECT_EQ(request.header("x-quillet-session"), "tok");
    EXPECT_FALSE(request.headers.contains("authorization"));
    EXPECT_EQ(onlyBody(), object(R"JSON({"model": "gpt-5-mini", "instructions": "S",
        "input": [{"role": "user", "content": "Q"}], "reasoning": {"effort": "minimal"}})JSON"));
    Keychain::remove(QStringLiteral("quillet-session"));
}

TEST_F(OpenAITest, OnlyUserTurnsCarryTheirFiles)
{
    const QList<Turn> turns{
        user(QStringLiteral("Explain"),
             {file(QStringLiteral("a.webp"), QStringLiteral("image/webp"), "PNG"),
              file(QStringLiteral("Week 3.PDF"), QStringLiteral("application/pdf"), "%PDF"),
              file(QStringLiteral("notes.md"), QStringLiteral("text/markdown"), "# Title")}),
        assistant(QStringLiteral("Done"), {file(QStringLiteral("b.png"), QStringLiteral("image/png"), "PNG")}),
        user(QStringLiteral("More"), {}),
    };
    direct().chat(QStringLiteral("S"), turns);
    EXPECT_EQ(onlyBody().value(u"input"), object(R"JSON({"i": [
        {"role": "user", "content": [
            {"type": "input_image", "image_url": "data:image/webp;base64,UE5H"},
            {"type": "input_file", "filename": "Week 3.PDF", "file_data": "data:application/pdf;base64,JVBERg=="},
            {"type": "input_text", "text": "【文件：notes.md】\n# Title"},
            {"type": "input_text", "text": "Explain"}]},
        {"role": "assistant", "content": "Done"},
        {"role": "user", "content": "More"}]})JSON").value(u"i"));
}

TEST_F(OpenAITest, RepliesJoinOutputTextOfEveryItem)
{
    const auto read = [](const char *json) { return OpenAIProvider::readReply(object(json)); };
    EXPECT_EQ(read(R"JSON({"output": [
        {"type": "reasoning", "summary": [{"type": "summary_text", "text": "thinking"}]},
        {"type": "message", "content": [{"type": "output_text", "text": "Hello"}, {"type": "refusal", "refusal": "no"},
                                        {"type": "output_text", "text": "world"}]}]})JSON"),
              QStringLiteral("Helloworld"));
    EXPECT_EQ(read(R"JSON({"output": [{"content": [{"type": "output_text", "text": "a"}]}, {"content": "b"},
        {"content": [{"type": "output_text", "text": "c"}]}]})JSON"), QStringLiteral("ac"));
    EXPECT_EQ(read(R"JSON({"output": {"content": []}})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"output": [[{"type": "output_text", "text": "x"}]]})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"output_text": "convenience field only"})JSON"), QString());

    answer("not json");
    const OpenAIProvider openAI = direct();
    EXPECT_EQ(openAI.chat({}, {user(QStringLiteral("x"))}), QString());
}
