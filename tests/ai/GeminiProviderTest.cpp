#include "ai/GeminiProvider.h"

#include "VendorTest.h"

namespace {

class GeminiTest : public VendorTest
{
protected:
    static GeminiProvider gemini()
    {
        return GeminiProvider({.key = QStringLiteral("AIza-1"), .model = QStringLiteral("gemini-2.5-pro")});
    }
};

} // namespace

TEST_F(GeminiTest, BodyHasTheSystemInstructionAndRolesModelAndUser)
{
    answer(R"JSON({"candidates": [{"content": {"role": "model", "parts": [{"text": "Sure"}]}}]})JSON");
    const QList<Turn> turns{user(QStringLiteral("Q1")), assistant(QStringLiteral("A1")),
                            {QStringLiteral("system"), QStringLiteral("odd role"), {}}};
    EXPECT_EQ(gemini().chat(QStringLiteral("Sys"), turns), QStringLiteral("Sure"));

    const TestServer::Request request = onlyRequest();
    EXPECT_EQ(request.path, "/v1beta/models/gemini-2.5-pro:generateContent");
    EXPECT_EQ(request.header("x-goog-api-key"), "AIza-1");
    EXPECT_EQ(request.header("content-type"), "application/json");
    EXPECT_FALSE(request.headers.contains("authorization"));
    EXPECT_EQ(onlyBody(), object(R"JSON({"systemInstruction": {"parts": [{"text": "Sys"}]}, "contents": [
        {"role": "user", "parts": [{"text": "Q1"}]},
        {"role": "model", "parts": [{"text": "A1"}]},
        {"role": "user", "parts": [{"text": "odd role"}]}]})JSON"));
}

TEST_F(GeminiTest, TextFilesGoAsTextAndEverythingElseInline)
{
    const QList<Turn> turns{
        user(QStringLiteral("Look"), {file(QStringLiteral("p.jpg"), QStringLiteral("image/jpeg"), "PNG"),
                                      file(QStringLiteral("d.json"), QStringLiteral("application/json"), "[1]"),
                                      file(QStringLiteral("s.pdf"), QStringLiteral("application/pdf"), "%PDF")}),
        assistant(QStringLiteral("Seen"), {file(QStringLiteral("t.csv"), QStringLiteral("text/csv"), "a,b")}),
    };
    gemini().chat(QStringLiteral("S"), turns);
    EXPECT_EQ(onlyBody().value(u"contents"), object(R"JSON({"c": [
        {"role": "user", "parts": [
            {"inlineData": {"mimeType": "image/jpeg", "data": "UE5H"}},
            {"text": "【文件：d.json】\n[1]"},
            {"inlineData": {"mimeType": "application/pdf", "data": "JVBERg=="}},
            {"text": "Look"}]},
        {"role": "model", "parts": [{"text": "【文件：t.csv】\na,b"}, {"text": "Seen"}]}]})JSON").value(u"c"));
}

TEST_F(GeminiTest, RepliesReadOnlyTheFirstCandidate)
{
    const auto read = [](const char *json) { return GeminiProvider::readReply(object(json)); };
    EXPECT_EQ(read(R"JSON({"candidates": [
        {"content": {"parts": [{"text": "one"}, {"inlineData": {}}, {"text": 2}, {"text": " two"}]}},
        {"content": {"parts": [{"text": "second candidate"}]}}]})JSON"), QStringLiteral("one two"));
    EXPECT_EQ(read(R"JSON({"candidates": [{"finishReason": "SAFETY", "safetyRatings": []}],
        "promptFeedback": {"blockReason": "SAFETY"}})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"promptFeedback": {"blockReason": "OTHER"}})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"candidates": [{"content": [{"parts": [{"text": "x"}]}]}]})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"candidates": {"content": {"parts": [{"text": "x"}]}}})JSON"), QString());
    EXPECT_EQ(read(R"JSON({"candidates": []})JSON"), QString());
}
