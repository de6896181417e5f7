#include "ai/ClaudeProvider.h"
#include "ai/GeminiProvider.h"
#include "ai/OpenAIProvider.h"

#include "VendorTest.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRandomGenerator>

#include <set>

namespace {

// Random JSON near the shapes the readers walk: keys and words from their vocabulary, and every
// value under "text" a unique token, so a reply can be checked to be made of those values only.
class Shapes
{
public:
    explicit Shapes(quint32 seed)
        : random_(seed)
    {
    }

    QJsonValue value(int depth)
    {
        switch (random_.bounded(depth > 4 ? 4 : 6)) {
        case 0: return word();
        case 1: return random_.bounded(2) ? QJsonValue(random_.bounded(100)) : QJsonValue(true);
        case 2: return QJsonValue::Null;
        case 3: return token();
        case 4: return object(depth + 1);
        default: {
            QJsonArray array;
            for (int i = random_.bounded(4); i > 0; --i)
                array.append(value(depth + 1));
            return array;
        }
        }
    }

    QJsonObject object(int depth)
    {
        static const char *const keys[] = {"content", "type", "text", "output", "candidates", "parts",
                                           "stop_reason", "x"};
        QJsonObject object;
        for (int i = random_.bounded(5); i > 0; --i) {
            const QString key = QString::fromLatin1(keys[random_.bounded(int(std::size(keys)))]);
            object.insert(key, key == u"text" && random_.bounded(10) < 7 ? QJsonValue(token()) : value(depth));
        }
        return object;
    }

    // A valid reply with some subtrees replaced at random.
    QJsonValue mutated(const QJsonValue &original, int depth = 0)
    {
        if (random_.bounded(8) == 0)
            return value(depth);
        if (original.isObject()) {
            QJsonObject object = original.toObject();
            for (auto it = object.begin(); it != object.end(); ++it)
                it.value() = it.key() == u"text" && it.value().isString() ? QJsonValue(token()) : mutated(it.value(), depth + 1);
            return object;
        }
        if (original.isArray()) {
            QJsonArray array;
            for (const QJsonValue &element : original.toArray())
                array.append(mutated(element, depth + 1));
            return array;
        }
        return original;
    }

    int pick(int bound) { return random_.bounded(bound); }

private:
    QString word()
    {
        static const char *const words[] = {"text", "output_text", "refusal", "message", "reasoning", ""};
        return QString::fromLatin1(words[random_.bounded(int(std::size(words)))]);
    }
    QString token() { return QStringLiteral("<%1>").arg(next_++); }

    QRandomGenerator random_;
    int next_ = 0;
};

void collectTexts(const QJsonValue &value, std::set<QString> &texts)
{
    if (value.isArray()) {
        for (const QJsonValue &element : value.toArray())
            collectTexts(element, texts);
    } else if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto it = object.begin(); it != object.end(); ++it) {
            if (it.key() == u"text" && it.value().isString())
                texts.insert(it.value().toString());
            collectTexts(it.value(), texts);
        }
    }
}

// The reply is made only of "text" values of the document, each used at most once.
::testing::AssertionResult madeOfTexts(const QString &reply, const QJsonObject &document)
{
    std::set<QString> texts;
    collectTexts(document, texts);
    qsizetype at = 0;
    while (at < reply.size()) {
        const qsizetype end = reply.indexOf(u'>', at);
        const QString token = end < 0 ? reply.mid(at) : reply.mid(at, end - at + 1);
        if (!token.startsWith(u'<') || texts.erase(token) == 0)
            return ::testing::AssertionFailure() << "unexpected " << token.toStdString() << " in "
                                                 << QJsonDocument(document).toJson().toStdString();
        at += token.size();
    }
    return ::testing::AssertionSuccess();
}

const QJsonObject validClaude = QJsonDocument::fromJson(R"JSON({"stop_reason": "end_turn", "content": [
    {"type": "thinking", "thinking": "t"}, {"type": "text", "text": "a"}, {"type": "text", "text": "b"}]})JSON").object();
const QJsonObject validOpenAI = QJsonDocument::fromJson(R"JSON({"output": [{"type": "reasoning", "content": []},
    {"type": "message", "content": [{"type": "output_text", "text": "a"}, {"type": "output_text", "text": "b"}]}]})JSON").object();
const QJsonObject validGemini = QJsonDocument::fromJson(R"JSON({"candidates": [
    {"content": {"parts": [{"text": "a"}, {"text": "b"}]}}, {"content": {"parts": [{"text": "c"}]}}]})JSON").object();

} // namespace

TEST(ReplyFuzz, RandomShapesGiveTextFromTheReplyOrNothing)
{
    Shapes shapes(20240611);
    int withText[3] = {};  // the shapes must reach the text often enough to mean something
    for (int round = 0; round < 3000; ++round) {
        const bool mutate = shapes.pick(2) == 0;
        const auto shape = [&](const QJsonObject &valid) {
            return mutate ? shapes.mutated(valid).toObject() : shapes.object(0);
        };

        const QJsonObject claudeReply = shape(validClaude);
        const auto claude = ClaudeProvider::readReply(claudeReply);
        EXPECT_EQ(claude.has_value(), claudeReply.value(u"stop_reason") != QJsonValue(QStringLiteral("refusal")));
        EXPECT_TRUE(madeOfTexts(claude.value_or(QString()), claudeReply));

        const QJsonObject openAIReply = shape(validOpenAI);
        const QString openAI = OpenAIProvider::readReply(openAIReply);
        EXPECT_TRUE(madeOfTexts(openAI, openAIReply));

        const QJsonObject geminiReply = shape(validGemini);
        const QString gemini = GeminiProvider::readReply(geminiReply);
        EXPECT_TRUE(madeOfTexts(gemini, geminiReply));
        if (HasFailure())
            return;
        withText[0] += !claude.value_or(QString()).isEmpty();
        withText[1] += !openAI.isEmpty();
        withText[2] += !gemini.isEmpty();
    }
    for (int count : withText)
        EXPECT_GT(count, 300);
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
