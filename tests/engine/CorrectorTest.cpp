#include "engine/Corrector.h"

#include "EventLoop.h"
#include "FakeProvider.h"
#include "QtPrinters.h"
#include "engine/Prompts.h"
#include "platform/Log.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QThread>

#include <gtest/gtest.h>

namespace {

struct Delivered
{
    int id = 0;
    QString text;
    QString translation;
    bool onMainThread = false;
};

// The sentences of one correction prompt, as the array it carries.
QStringList linesOf(const QString &prompt)
{
    const QString marker = QStringLiteral("New sentences, as a JSON array:\n");
    const qsizetype start = prompt.indexOf(marker) + marker.size();
    const QString line = prompt.mid(start, prompt.indexOf(u'\n', start) - start);
    QStringList lines;
    for (const QJsonValue &value : QJsonDocument::fromJson(line.toUtf8()).array())
        lines.append(value.toString());
    return lines;
}

QString contextOf(const QString &prompt)
{
    const QString open = QStringLiteral("<context>\n");
    const qsizetype start = prompt.indexOf(open) + open.size();
    return prompt.mid(start, prompt.indexOf(QStringLiteral("\n</context>"), start) - start);
}

QString fixesJson(const QList<std::pair<QString, QString>> &fixes)
{
    QJsonArray array;
    for (const auto &[text, translation] : fixes)
        array.append(QJsonObject{{QStringLiteral("text"), text}, {QStringLiteral("translation"), translation}});
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

QString logText()
{
    QFile file(Log::path());
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

class CorrectorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(Log::path());
        corrector = Corrector::make(provider, QStringLiteral("Korean"), QStringLiteral("Simplified Chinese"));
        corrector->onFix = [this](int id, const QString &text, const QString &translation) {
            fixes.append({id, text, translation, QThread::currentThread() == QCoreApplication::instance()->thread()});
        };
    }

    // A call still in flight outlives the test: its reply must not reach this fixture.
    void TearDown() override
    {
        if (corrector)
            corrector->onFix = [](int, const QString &, const QString &) {};
        provider->release();
    }

    // Answers every call from the script: each sentence of the batch gets its scripted fix, or
    // itself with the translation "译".
    void answerFromScript()
    {
        provider->setHandler([this](const FakeProvider::Call &call) -> std::optional<QString> {
            QList<std::pair<QString, QString>> entries;
            for (const QString &line : linesOf(call.prompt()))
                entries.append(script.value(line, {line, QStringLiteral("译")}));
            return fixesJson(entries);
        });
    }

    // Adds a last row whose fix always passes and waits for it: every row before it is done.
    void finish()
    {
        corrector->add(999, QStringLiteral("sentinel row"));
        ASSERT_TRUE(runEventsUntil([this] { return !fixes.isEmpty() && fixes.last().id == 999; }));
        fixes.removeLast();
    }

    // The context the next call carries.
    QString nextContext()
    {
        const qsizetype before = provider->calls().size();
        corrector->add(1000, QStringLiteral("probe"));
        EXPECT_TRUE(runEventsUntil([&] { return provider->calls().size() > before; }));
        return contextOf(provider->calls().last().prompt());
    }

    bool waitForCalls(qsizetype count)
    {
        return runEventsUntil([&] { return provider->calls().size() >= count; });
    }

    QList<int> fixedIds() const
    {
        QList<int> ids;
        for (const Delivered &fix : fixes)
            ids.append(fix.id);
        return ids;
    }

    std::shared_ptr<FakeProvider> provider = std::make_shared<FakeProvider>();
    std::shared_ptr<Corrector> corrector;
    QHash<QString, std::pair<QString, QString>> script;
    QList<Delivered> fixes;
};

TEST_F(CorrectorTest, AcceptsAFixOnlyCloseToTheRow)
{
    answerFromScript();
    // (row, fix, accepted): the fix must have more than 0.6 and less than 1.6 times the row's
    // characters, and at least half of its non-blank characters must come from the row, each
    // character of the row counted once.
    const QList<std::tuple<QString, QString, bool>> cases{
        {QStringLiteral("abcdefghi1"), QStringLiteral("abcdef"), false},
        {QStringLiteral("abcdefghi2"), QStringLiteral("abcdefg"), true},
        {QStringLiteral("abcdefghi3"), QStringLiteral("abcdefghi3abcdef"), false},
        {QStringLiteral("abcdefghi4"), QStringLiteral("abcdefghi4abcde"), true},
        // An empty row: the ratio divides by one, then no character of the fix is a hit.
        {QString(), QStringLiteral("x"), false},
        {QStringLiteral("그 사람은 학교에 갔다"), QStringLiteral("학교 학교 학교 학교 학교"), false},
        // Spaces count in the length (15 of 10, then 17 of 10) but not in the hits.
        {QStringLiteral("abcdefghij"), QStringLiteral("a b c d e f g h"), true},
        {QStringLiteral("abcdefghik"), QStringLiteral("a b c d e f g h i"), false},
        {QStringLiteral("abcd"), QStringLiteral("abxy"), true},
        // Characters are graphemes: a decomposed é in the fix is not the e of the row.
        {QStringLiteral("eeee"), QString::fromUtf16(u"e\u0301e\u0301e\u0301e"), false},
    };
    QList<int> accepted;
    for (qsizetype i = 0; i < cases.size(); ++i) {
        const auto &[row, fix, good] = cases[i];
        script[row] = {fix, QStringLiteral("翻译")};
        corrector->add(int(i), row);
        if (good)
            accepted.append(int(i));
    }
    finish();
    EXPECT_EQ(fixedIds(), accepted);
    EXPECT_EQ(fixes[0].text, QStringLiteral("abcdefg"));
    EXPECT_EQ(fixes[0].translation, QStringLiteral("翻译"));
    EXPECT_TRUE(fixes[0].onMainThread);
}

TEST_F(CorrectorTest, RefusedFixKeepsTheRowAndDropsItsTranslation)
{
    answerFromScript();
    script[QStringLiteral("배만 원이 들었다")] = {QStringLiteral("백만 원이 들었다"), QStringLiteral("花了一百万韩元")};
    script[QStringLiteral("짧은 문장")] = {QStringLiteral("완전히 다른 아주 긴 문장입니다 정말로"), QStringLiteral("错")};
    script[QStringLiteral("번역 없음")] = {QStringLiteral("번역 없음!"), QString()};
    script[QStringLiteral("그대로")] = {QStringLiteral("그대로"), QStringLiteral("照旧")};
    corrector->add(1, QStringLiteral("배만 원이 들었다"));
    corrector->add(2, QStringLiteral("짧은 문장"));
    corrector->add(3, QStringLiteral("번역 없음"));
    corrector->add(4, QStringLiteral("그대로"));
    finish();

    ASSERT_EQ(fixedIds(), (QList<int>{1, 4}));
    EXPECT_EQ(fixes[0].text, QStringLiteral("백만 원이 들었다"));
    EXPECT_EQ(fixes[1].translation, QStringLiteral("照旧"));

    // What was believed goes into the context of the next call: the fix, the original of a
    // refused fix, and an accepted fix even without a translation.
    EXPECT_EQ(nextContext(), QStringLiteral("백만 원이 들었다\n짧은 문장\n번역 없음!\n그대로\nsentinel row"));
    const QString log = logText();
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错: 배만 원이 들었다 → 백만 원이 들었다\n")));
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错: 번역 없음 → 번역 없음!\n")));
    EXPECT_FALSE(log.contains(QStringLiteral("짧은 문장 →")));
    EXPECT_FALSE(log.contains(QStringLiteral("그대로 →")));
}

TEST_F(CorrectorTest, RowsAddedDuringACallLeaveAsOneBatch)
{
    answerFromScript();
    provider->hold();
    corrector->add(1, QStringLiteral("첫 문장"));
    ASSERT_TRUE(provider->waitForCalls(1));
    corrector->add(2, QStringLiteral("둘째"));
    corrector->add(3, QStringLiteral("셋째"));
    corrector->add(4, QStringLiteral("넷째"));
    QCoreApplication::processEvents();
    EXPECT_EQ(provider->calls().size(), 1);
    provider->release();
    ASSERT_TRUE(runEventsUntil([this] { return fixes.size() == 4; }));

    const QList<FakeProvider::Call> calls = provider->calls();
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(linesOf(calls[0].prompt()), QStringList{QStringLiteral("첫 문장")});
    EXPECT_EQ(linesOf(calls[1].prompt()),
              (QStringList{QStringLiteral("둘째"), QStringLiteral("셋째"), QStringLiteral("넷째")}));
    EXPECT_EQ(fixedIds(), (QList<int>{1, 2, 3, 4}));
    for (const FakeProvider::Call &call : calls) {
        EXPECT_EQ(call.system, Prompts::correctSystem());
        ASSERT_EQ(call.turns.size(), 1);
        EXPECT_EQ(call.turns[0].role, QStringLiteral("user"));
        EXPECT_TRUE(call.turns[0].attachments.isEmpty());
        EXPECT_TRUE(call.prompt().contains(QStringLiteral("lecture in Korean")));
        EXPECT_TRUE(call.prompt().contains(QStringLiteral("Simplified Chinese")));
        for (const char *placeholder : {"{lecture_language}", "{answer_language}", "{context}", "{lines}"})
            EXPECT_FALSE(call.prompt().contains(QString::fromLatin1(placeholder))) << placeholder;
    }
    EXPECT_EQ(contextOf(calls[0].prompt()), QString());
    EXPECT_EQ(contextOf(calls[1].prompt()), QStringLiteral("첫 문장"));
}

TEST_F(CorrectorTest, ReadsTheArrayOutOfChatterAndFences)
{
    provider->enqueue(QStringLiteral("Here you go:\n```json\n") + fixesJson({{QStringLiteral("고친 문장"), QStringLiteral("改好的句子")}})
                      + QStringLiteral("\n```\nHope this helps."));
    // A bracket in the chatter after the array spoils the cut: nothing is used.
    provider->enqueue(fixesJson({{QStringLiteral("고친 문장"), QStringLiteral("改好的句子")}}) + QStringLiteral(" [sic]"));
    provider->enqueue(QStringLiteral("```\n[{\"text\": 42, \"translation\": \"  四十二\\n\"}]\n```"));
    corrector->add(1, QStringLiteral("고칠 문장"));
    ASSERT_TRUE(runEventsUntil([this] { return fixes.size() == 1; }));
    corrector->add(2, QStringLiteral("고칠 문장"));
    ASSERT_TRUE(waitForCalls(2));
    corrector->add(3, QStringLiteral("42"));
    ASSERT_TRUE(runEventsUntil([this] { return fixes.size() == 2; }));
    EXPECT_EQ(fixedIds(), (QList<int>{1, 3}));
    EXPECT_EQ(fixes[0].text, QStringLiteral("고친 문장"));
    EXPECT_EQ(fixes[0].translation, QStringLiteral("改好的句子"));
    // A number where text belongs reads as its written form; both fields are trimmed.
    EXPECT_EQ(fixes[1].text, QStringLiteral("42"));
    EXPECT_EQ(fixes[1].translation, QStringLiteral("四十二"));
}

TEST_F(CorrectorTest, UnusableRepliesChangeNothingAndAreLogged)
{
    const QString three = fixesJson({{QStringLiteral("a"), QStringLiteral("一")},
                                     {QStringLiteral("b"), QStringLiteral("二")},
                                     {QStringLiteral("c"), QStringLiteral("三")}});
    const QString longGarbage = QStringLiteral("<html>") + QString(300, u'x');
    provider->hold();
    corrector->add(1, QStringLiteral("row one"));
    ASSERT_TRUE(provider->waitForCalls(1));
    corrector->add(2, QStringLiteral("a"));
    corrector->add(3, QStringLiteral("b"));
    provider->enqueue(QStringLiteral("（连不上 Fake，检查网络）"));
    provider->enqueue(three);  // three entries for a batch of two
    provider->enqueue(std::nullopt);
    provider->enqueue(QStringLiteral("[\"a\"]"));             // not an object
    provider->enqueue(QStringLiteral("] backwards ["));
    provider->enqueue(longGarbage);
    provider->release();
    ASSERT_TRUE(waitForCalls(2));
    for (int id = 4; id <= 7; ++id) {
        corrector->add(id, QStringLiteral("a"));
        ASSERT_TRUE(waitForCalls(id - 1));
    }
    answerFromScript();
    // The rows as sent became context all the same.
    EXPECT_EQ(nextContext(), QStringLiteral("row one\na\nb\na\na\na\na"));
    finish();
    EXPECT_TRUE(fixedIds() == QList<int>{1000});

    const QString log = logText();
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错 no usable reply: （连不上 Fake，检查网络）\n")));
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错 no usable reply: ") + three + u'\n'));
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错 no usable reply: nil\n")));
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错 no usable reply: [\"a\"]\n")));
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错 no usable reply: ] backwards [\n")));
    EXPECT_TRUE(log.contains(QStringLiteral(" AI 纠错 no usable reply: ") + longGarbage.left(200) + u'\n'));
    EXPECT_EQ(log.count(QStringLiteral("no usable reply")), 6);
}

TEST_F(CorrectorTest, PromptCarriesTheLastTwelveSentences)
{
    answerFromScript();
    for (int id = 1; id <= 40; ++id)
        corrector->add(id, QStringLiteral("sentence %1").arg(id));
    finish();
    QStringList expected;
    for (int id = 30; id <= 40; ++id)
        expected.append(QStringLiteral("sentence %1").arg(id));
    expected.append(QStringLiteral("sentinel row"));
    EXPECT_EQ(nextContext(), expected.join(u'\n'));
}

TEST_F(CorrectorTest, AReplyForADroppedCorrectorStillArrives)
{
    answerFromScript();
    provider->hold();
    corrector->add(7, QStringLiteral("마지막 줄"));
    ASSERT_TRUE(provider->waitForCalls(1));
    corrector.reset();
    provider->release();
    ASSERT_TRUE(runEventsUntil([this] { return fixes.size() == 1; }));
    EXPECT_EQ(fixes[0].id, 7);
}

TEST_F(CorrectorTest, OddTextsReachTheModelIntact)
{
    answerFromScript();
    const QString huge = QString(20000, u'가');
    const QString quoted = QStringLiteral("He said \"hi\" \\ and\nleft");
    corrector->add(1, huge);
    corrector->add(2, quoted);
    finish();
    QStringList sent;
    for (const FakeProvider::Call &call : provider->calls())
        sent += linesOf(call.prompt());
    EXPECT_EQ(sent.mid(0, 2), (QStringList{huge, quoted}));
    EXPECT_EQ(fixedIds(), (QList<int>{1, 2}));
}

} // namespace
