#include "VendorTest.h"

#include <QJsonArray>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace {

const std::function<std::optional<QString>(const QJsonObject &)> readers[] = {
    ClaudeProvider::readReply, OpenAIProvider::readReply, GeminiProvider::readReply};

// The reply with random subtrees replaced, or wrapped in an array where an object belongs; every
// "text" string becomes a fresh token "<n>", and so may a stray value under another key.
QJsonValue mutated(const QJsonValue &value, QRandomGenerator &random, int &next)
{
    switch (random.bounded(16)) {
    case 0: return QJsonArray{value};
    case 1: return random.bounded(2) ? QJsonValue(7) : QJsonValue(u"refusal"_s);
    case 2: return u"<%1>"_s.arg(next++);
    }
    QJsonArray array = value.toArray();
    for (auto it = array.begin(); it != array.end(); ++it)
        *it = mutated(*it, random, next);
    QJsonObject object = value.toObject();
    for (auto it = object.begin(); it != object.end(); ++it)
        *it = it.key() == u"text" && it->isString() ? QJsonValue(u"<%1>"_s.arg(next++))
                                                    : mutated(*it, random, next);
    return value.isArray() ? array : value.isObject() ? object : value;
}

// The reply holds only tokens that stand under "text" in the document, each once.
bool madeOfTexts(const QString &reply, const QJsonObject &document)
{
    const QString json = QString::fromUtf8(QJsonDocument(document).toJson(QJsonDocument::Compact));
    const QStringList tokens = reply.split(u'>');  // "<1><2>" gives "<1", "<2" and ""
    for (qsizetype i = 0; i + 1 < tokens.size(); ++i) {
        if (tokens.indexOf(tokens[i]) != i || !json.contains(u"\"text\":\"" + tokens[i] + u">\""))
            return false;
    }
    return tokens.last().isEmpty();
}

} // namespace

TEST_F(VendorTest, RepliesAreMadeOfTheTextBlocksAndOnlyClaudesRefusalIsAbsent)
{
    // The reader (Claude, OpenAI, Gemini), the reply and its text.
    const std::tuple<int, const char *, std::optional<QString>> rows[] = {
        {0, R"JSON({"content": [{"type": "thinking", "thinking": "hmm", "signature": "x"},
            {"type": "text", "text": "Answer"}]})JSON", u"Answer"_s},
        {0, R"JSON({"content": [{"type": "text", "text": " one "}, {"type": "tool_use", "text": "no"},
            {"type": "text", "text": 5}, {"type": "text", "text": "two\n"}]})JSON",
         u" one two\n"_s},
        {0, R"JSON({"stop_reason": "refusal", "content": [{"type": "text", "text": "I can't"}]})JSON",
         std::nullopt},
        {0, R"JSON({"stop_reason": ["refusal"], "content": []})JSON", QString()},
        {1, R"JSON({"output": [{"type": "reasoning", "content": [{"type": "reasoning_text", "text": "x"}]},
            {"type": "message", "content": [{"type": "output_text", "text": "Hello"},
                {"type": "refusal", "refusal": "no"}, {"type": "output_text", "text": "world"}]}]})JSON",
         u"Helloworld"_s},
        {1, R"JSON({"output": [{"content": [{"type": "output_text", "text": "a"}]}, {"content": "b"},
            {"content": [{"type": "output_text", "text": "c"}]}]})JSON", u"ac"_s},
        {1, R"JSON({"output_text": "convenience field only"})JSON", QString()},
        {2, R"JSON({"candidates": [
            {"content": {"parts": [{"text": "one"}, {"inlineData": {}}, {"text": 2}, {"text": " two"}]}},
            {"content": {"parts": [{"text": "second candidate"}]}}]})JSON", u"one two"_s},
        {2, R"JSON({"candidates": [{"finishReason": "SAFETY", "safetyRatings": []}],
            "promptFeedback": {"blockReason": "SAFETY"}})JSON", QString()},
    };
    for (const auto &[reader, json, text] : rows)
        EXPECT_EQ(readers[reader](object(json)), text) << json;
}

TEST_F(VendorTest, RandomReplyShapesGiveTextFromTheReplyOrNothing)
{
    const QJsonObject valid[] = {
        object(R"JSON({"stop_reason": "end_turn", "content": [{"type": "thinking", "thinking": "t"},
            {"type": "text", "text": "a"}, {"type": "text", "text": "b"}]})JSON"),
        object(R"JSON({"output": [{"type": "reasoning", "content": []}, {"type": "message",
            "content": [{"type": "output_text", "text": "a"}, {"type": "output_text", "text": "b"}]}]})JSON"),
        object(R"JSON({"candidates": [{"content": {"parts": [{"text": "a"}, {"text": "b"}]}},
            {"content": {"parts": [{"text": "c"}]}}]})JSON")};
    QRandomGenerator random(20240611);
    int next = 0;
    int withText[3] = {};  // the shapes must reach the text often enough to mean something
    for (int round = 0; round < 2000 && !HasFailure(); ++round) {
        for (int i = 0; i < 3; ++i) {
            const QJsonObject reply = mutated(valid[i], random, next).toObject();
            const std::optional<QString> text = readers[i](reply);
            EXPECT_EQ(text.has_value(), i > 0 || reply.value(u"stop_reason") != u"refusal"_s);
            EXPECT_TRUE(madeOfTexts(text.value_or(QString()), reply)) << text.value_or(QString());
            withText[i] += !text.value_or(QString()).isEmpty();
        }
    }
    for (int count : withText)
        EXPECT_GT(count, 200);
}

TEST_F(VendorTest, FailuresAreWordedAndBrokenRepliesGiveEmptyText)
{
    // Two code points per character: the cut at 80 counts characters.
    const QString accented = u"e\u0301"_s.repeated(200);
    const auto reply = &TestServer::Response::json;
    std::vector<std::pair<TestServer::Response, QString>> rows{
        {reply(R"JSON({"error": {"message": "Busy"}})JSON", 500), u"（%1 出错 500：Busy）"_s},
        {reply("", 500), u"（%1 出错 500）"_s},
        {reply("<html><h1>502 Bad Gateway</h1></html>", 500), u"（%1 出错 500）"_s},
        {reply(R"JSON({"error": {"message": ")JSON" + accented.toUtf8() + "\"}}", 400),
         u"（%1 出错 400："_s + accented.left(160) + u"）"_s},
        {reply(R"JSON({"error": {"message": 42}})JSON", 404), u"（%1 出错 404）"_s},
        {reply(R"JSON({"error": "plain text error"})JSON", 503), u"（%1 出错 503）"_s},
        {reply(R"JSON({"pad": ")JSON" + QByteArray(30'000'000, 'p') + R"JSON(", "content": [{"type": "text",
            "text": "read"}], "output": [{"content": [{"type": "output_text", "text": "read"}]}],
            "candidates": [{"content": {"parts": [{"text": "read"}]}}]})JSON", 200), u"read"_s},
    };
    for (int status : {401, 403, 429}) {
        const QString text = status == 429 ? u"（%1 请求太频繁或额度不足，稍后再试）"_s
                                           : u"（%1 的 API key 无效，请在设置里重新填写）"_s;
        rows.emplace_back(reply(R"JSON({"error": {"type": "x", "message": "No"}})JSON", status), text);
        rows.emplace_back(reply("", status), text);
    }
    for (const QByteArray &body : {QByteArray(), QByteArray("null"), QByteArray("[]"), QByteArray("\"text\""),
                                   QByteArray("{\"content\": ["), QByteArray(100'000, '['),
                                   QByteArray("\0\xff{}", 4), QByteArray("{\"content\": {\"text\": 1}}")})
        rows.emplace_back(reply(body, 200), QString());
    const QString cannotConnect = u"（连不上 %1，检查网络）"_s;
    TestServer::Response stall;
    stall.stall = true;
    const auto patient = vendors();
    const auto hasty = vendors(std::chrono::milliseconds(300));
    for (size_t vendor = 0; vendor < patient.size(); ++vendor) {
        const QString name = patient[vendor]->displayName();
        SCOPED_TRACE(name.toStdString());
        for (const auto &[response, text] : rows) {
            server.enqueue(response);
            EXPECT_EQ(ask(*patient[vendor]), QString(text).replace(u"%1"_s, name))
                << response.body.left(40).constData();
        }
        server.enqueue(stall);
        EXPECT_EQ(ask(*hasty[vendor]), cannotConnect.arg(name));
    }
    EXPECT_EQ(server.requests().size(), qsizetype(3 * (rows.size() + 1))) << "nothing is retried";
    server.enqueue(reply(R"JSON({"stop_reason": "refusal", "content": []})JSON", 200));
    EXPECT_EQ(ask(*patient[0]), std::nullopt) << "a refusal";

    const QString closed = TestServer().url();  // nothing listens there once it is gone
    for (const char *key : {"ai.claude.url", "ai.openai.url", "ai.gemini.url"})
        QSettings().setValue(QString::fromLatin1(key), closed);
    for (const auto &provider : patient)
        EXPECT_EQ(ask(*provider), cannotConnect.arg(provider->displayName()));
}
