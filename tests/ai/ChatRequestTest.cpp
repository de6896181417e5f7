#include "VendorTest.h"

using namespace Qt::StringLiterals;

// Paths and key or session headers are checked with the provider factories.
TEST_F(VendorTest, RequestBodiesCarryTheTurnsWithTheirFilesInOrder)
{
    // Files on both sides: an image, a PDF, JSON, and text that isn't UTF-8.
    const QList<Attachment> files{{u"a.png"_s, u"image/png"_s, "PNG"},
                                  {u"Week 3.PDF"_s, u"application/pdf"_s, "%PDF"},
                                  {u"d.json"_s, u"application/json"_s, "[1]"}};
    const Turn done{u"assistant"_s, u"Done"_s, {{u"n.txt"_s, u"text/plain"_s, "\xff"}}};
    const QList<Turn> lesson{user(u"Explain"_s, files), done, user(u"More"_s)};
    const QList<Turn> question{user(u"Q"_s)};
    const QList<Turn> oddRole = lesson + QList<Turn>{{u"system"_s, u"odd role"_s, {}}};
    const std::tuple<std::unique_ptr<AIProvider>, QList<Turn>, const char *> rows[] = {
        {std::make_unique<ClaudeProvider>(
             ClaudeProvider::Settings{.model = u"claude-haiku-4-5"_s, .effort = u"low"_s}),
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
        {std::make_unique<ClaudeProvider>(
             ClaudeProvider::Settings{.model = u"claude-sonnet-5-5"_s, .effort = u"low"_s}),
         question, R"JSON({"model": "claude-sonnet-5-5", "max_tokens": 4000, "system": "S",
            "messages": [{"role": "user", "content": "Q"}],
            "output_config": {"effort": "low"}, "fallbacks": "default"})JSON"},
        {std::make_unique<OpenAIProvider>(OpenAIProvider::Settings{.model = u"gpt-5"_s}),
         lesson, R"JSON({"model": "gpt-5", "instructions": "S", "input": [
            {"role": "user", "content": [
                {"type": "input_image", "image_url": "data:image/png;base64,UE5H"},
                {"type": "input_file", "filename": "Week 3.PDF",
                 "file_data": "data:application/pdf;base64,JVBERg=="},
                {"type": "input_text", "text": "【文件：d.json】\n[1]"},
                {"type": "input_text", "text": "Explain"}]},
            {"role": "assistant", "content": "Done"},
            {"role": "user", "content": "More"}]})JSON"},
        {std::make_unique<GeminiProvider>(GeminiProvider::Settings{.model = u"gemini-2.5-pro"_s}),
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
    for (const auto &[provider, turns, body] : rows) {
        provider->chat(u"S"_s, turns);
        EXPECT_EQ(object(server.requests().last().body), object(body));
        EXPECT_EQ(server.requests().last().header("content-type"), "application/json");
    }
    // Only models other than Haiku get the fallback.
    EXPECT_EQ(server.requests().value(0).header("anthropic-version"), "2023-06-01");
    EXPECT_FALSE(server.requests().value(0).headers.contains("anthropic-beta"));
    EXPECT_EQ(server.requests().value(1).header("anthropic-beta"), "server-side-fallback-2026-07-01");
}
