#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"

#include "VendorTest.h"

// Paths and key or session headers are checked with the provider factories.
TEST_F(VendorTest, RequestBodiesCarryTheTurnsWithTheirFilesInOrder)
{
    // Files on both sides: an image, a PDF, JSON, and text that isn't UTF-8.
    const QList<Attachment> files{{QStringLiteral("a.png"), QStringLiteral("image/png"), "PNG"},
                                  {QStringLiteral("Week 3.PDF"), QStringLiteral("application/pdf"), "%PDF"},
                                  {QStringLiteral("d.json"), QStringLiteral("application/json"), "[1]"}};
    const Attachment notes{QStringLiteral("n.txt"), QStringLiteral("text/plain"), "\xff"};
    const Turn done{QStringLiteral("assistant"), QStringLiteral("Done"), {notes}};
    const QList<Turn> lesson{user(QStringLiteral("Explain"), files), done, user(QStringLiteral("More"))};
    const QList<Turn> oddRole = lesson + QList<Turn>{{QStringLiteral("system"), QStringLiteral("odd role"), {}}};
    const struct
    {
        std::unique_ptr<AIProvider> provider;
        QList<Turn> turns;
        const char *body;
    } rows[] = {
        {std::make_unique<ClaudeProvider>(ClaudeProvider::Settings{.model = QStringLiteral("claude-haiku-4-5"),
                                                                   .effort = QStringLiteral("low")}),
         lesson, R"JSON({"model": "claude-haiku-4-5", "max_tokens": 4000, "system": "S", "messages": [
            {"role": "user", "content": [
                {"type": "image", "source": {"type": "base64", "media_type": "image/png", "data": "UE5H"}},
                {"type": "document",
                 "source": {"type": "base64", "media_type": "application/pdf", "data": "JVBERg=="}},
                {"type": "text", "text": "【文件：d.json】\n[1]"},
                {"type": "text", "text": "Explain"}]},
            {"role": "assistant", "content": [{"type": "text", "text": "【文件：n.txt】\n\uFFFD"},
                                              {"type": "text", "text": "Done"}]},
            {"role": "user", "content": "More"}]})JSON"},
        {std::make_unique<ClaudeProvider>(ClaudeProvider::Settings{.model = QStringLiteral("claude-sonnet-5-5"),
                                                                   .effort = QStringLiteral("low")}),
         {user(QStringLiteral("Q"))}, R"JSON({"model": "claude-sonnet-5-5", "max_tokens": 4000, "system": "S",
            "messages": [{"role": "user", "content": "Q"}],
            "output_config": {"effort": "low"}, "fallbacks": "default"})JSON"},
        {std::make_unique<OpenAIProvider>(OpenAIProvider::Settings{.model = QStringLiteral("gpt-5")}),
         lesson, R"JSON({"model": "gpt-5", "instructions": "S", "input": [
            {"role": "user", "content": [
                {"type": "input_image", "image_url": "data:image/png;base64,UE5H"},
                {"type": "input_file", "filename": "Week 3.PDF",
                 "file_data": "data:application/pdf;base64,JVBERg=="},
                {"type": "input_text", "text": "【文件：d.json】\n[1]"},
                {"type": "input_text", "text": "Explain"}]},
            {"role": "assistant", "content": "Done"},
            {"role": "user", "content": "More"}]})JSON"},
        {std::make_unique<GeminiProvider>(GeminiProvider::Settings{.model = QStringLiteral("gemini-2.5-pro")}),
         oddRole, R"JSON({"systemInstruction": {"parts": [{"text": "S"}]}, "contents": [
            {"role": "user", "parts": [
                {"inlineData": {"mimeType": "image/png", "data": "UE5H"}},
                {"inlineData": {"mimeType": "application/pdf", "data": "JVBERg=="}},
                {"text": "【文件：d.json】\n[1]"},
                {"text": "Explain"}]},
            {"role": "model", "parts": [{"text": "【文件：n.txt】\n\uFFFD"}, {"text": "Done"}]},
            {"role": "user", "parts": [{"text": "More"}]},
            {"role": "user", "parts": [{"text": "odd role"}]}]})JSON"},
    };
    for (const auto &row : rows) {
        row.provider->chat(QStringLiteral("S"), row.turns);
        EXPECT_EQ(object(server.requests().last().body), object(row.body));
        EXPECT_EQ(server.requests().last().header("content-type"), "application/json");
    }
    // Only models other than Haiku get the fallback.
    const QList<TestServer::Request> requests = server.requests();
    EXPECT_EQ(requests[0].header("anthropic-version"), "2023-06-01");
    EXPECT_FALSE(requests[0].headers.contains("anthropic-beta"));
    EXPECT_EQ(requests[1].header("anthropic-version"), "2023-06-01");
    EXPECT_EQ(requests[1].header("anthropic-beta"), "server-side-fallback-2026-07-01");
}
