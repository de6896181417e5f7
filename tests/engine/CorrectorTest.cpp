#include "engine/Corrector.h"

#include "Corrections.h"
#include "EventLoop.h"
#include "FakeProvider.h"
#include "Files.h"
#include "QtPrinters.h"
#include "platform/Http.h"
#include "platform/Log.h"

#include <QCoreApplication>
#include <QFile>
#include <QHash>
#include <QThread>
#include <QThreadPool>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString contextOf(const QString &prompt)
{
    const QString open = u"<context>\n"_s;
    const qsizetype start = prompt.indexOf(open) + open.size();
    return prompt.mid(start, prompt.indexOf(u"\n</context>"_s, start) - start);
}

class CorrectorTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(Log::path());
        corrector->onFix = [this](int id, const QString &text, const QString &translation) {
            EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
            fixes << u"%1 %2 | %3"_s.arg(id).arg(text, translation);
        };
        // Calls no queued reply answers: each sentence gets its scripted fix, or itself with "译".
        provider->setHandler([this](const FakeProvider::Call &call) -> std::optional<QString> {
            QList<std::pair<QString, QString>> entries;
            for (const QString &line : Corrections::sentences(call.prompt()))
                entries << script.value(line, {line, u"译"_s});
            return Corrections::reply(entries);
        });
    }

    // A call still in flight outlives the test: its reply must not reach this fixture.
    void TearDown() override
    {
        if (corrector)
            corrector->cancel();
        provider->release();
    }

    // Adds a last row whose fix always passes and waits for it: every row before it is done.
    void finish()
    {
        corrector->add(999, u"sentinel row"_s);
        ASSERT_TRUE(runEventsUntil([this] { return !fixes.isEmpty() && fixes.last().startsWith(u"999 "_s); }));
        fixes.removeLast();
    }

    // The context the next call carries.
    QString nextContext()
    {
        const qsizetype before = provider->calls().size();
        corrector->add(1000, u"probe"_s);
        EXPECT_TRUE(waitForCalls(before + 1));
        return contextOf(provider->calls().last().prompt());
    }

    bool waitForCalls(qsizetype count)
    {
        return runEventsUntil([&] { return provider->calls().size() >= count; });
    }

    std::shared_ptr<FakeProvider> provider = std::make_shared<FakeProvider>();
    std::shared_ptr<Corrector> corrector = Corrector::make(provider, u"Korean"_s, u"Simplified Chinese"_s);
    QHash<QString, std::pair<QString, QString>> script;
    QStringList fixes;  // "id text | translation"
};

TEST_F(CorrectorTest, AFixIsBelievedOnlyCloseToTheRowAndDeliveredWithItsTranslation)
{
    // (row, fix, translation, believed): the fix must have more than 0.6 and less than 1.6 times the
    // row's characters, and at least half of its non-blank characters must come from the row, each
    // character of the row counted once.
    const QList<std::tuple<QString, QString, QString, bool>> cases{
        {u"abcdefghi1"_s, u"abcdef"_s, u"翻译"_s, false},
        {u"abcdefghi2"_s, u"abcdefg"_s, u"翻译"_s, true},
        {u"abcdefghi3"_s, u"abcdefghi3abcdef"_s, u"翻译"_s, false},
        {u"abcdefghi4"_s, u"abcdefghi4abcde"_s, u"翻译"_s, true},
        // An empty row: the ratio divides by one, then no character of the fix is a hit.
        {QString(), u"x"_s, u"翻译"_s, false},
        {u"그 사람은 학교에 갔다"_s, u"학교 학교 학교 학교 학교"_s, u"翻译"_s, false},
        // Spaces count in the length (15 of 10, then 17 of 10) but not in the hits (4 of 8).
        {u"abcdefghij"_s, u"a b c d w x y z"_s, u"翻译"_s, true},
        {u"abcdefghik"_s, u"a b c d e f g h i"_s, u"翻译"_s, false},
        {u"abcd"_s, u"abxy"_s, u"翻译"_s, true},
        // Characters are graphemes: a decomposed é in the fix is not the e of the row.
        {u"eeee"_s, u"e\u0301e\u0301e\u0301e"_s, u"翻译"_s, false},
        // Believed without a translation, a fix isn't delivered; an unchanged row is.
        {u"번역 없음"_s, u"번역 없음!"_s, QString(), true},
        {u"그대로"_s, u"그대로"_s, u"照旧"_s, true},
        // Odd texts reach the model intact.
        {QString(10000, u'가'), QString(10000, u'가'), u"译"_s, true},
        {u"He said \"hi\" \\ and\nleft"_s, u"He said \"hi\" \\ and\nleft"_s, u"译"_s, true},
    };
    QStringList rows;
    QStringList kept;
    QStringList delivered;
    for (int i = 0; i < int(cases.size()); ++i) {
        const auto &[row, fix, translation, believed] = cases[i];
        script[row] = {fix, translation};
        corrector->add(i, row);
        rows << row;
        kept << (believed ? fix : row);
        if (believed && !translation.isEmpty())
            delivered << u"%1 %2 | %3"_s.arg(i).arg(fix, translation);
    }
    finish();
    EXPECT_EQ(fixes, delivered);
    QStringList sent;
    for (const FakeProvider::Call &call : provider->calls())
        sent << Corrections::sentences(call.prompt());
    EXPECT_EQ(sent, rows << u"sentinel row"_s);
    // What was believed, else the row as heard, is context; the prompt carries the last twelve.
    kept << u"sentinel row"_s;
    EXPECT_EQ(nextContext(), kept.mid(kept.size() - 12).join(u'\n'));
    const QString log = QString::fromUtf8(readFile(Log::path()));
    for (const auto &[row, fix, translation, believed] : cases) {
        const bool changed = believed && fix != row;
        EXPECT_EQ(log.contains(u" AI 纠错: "_s + row + u" → "_s + fix + u'\n'), changed) << row.toStdString();
    }
}

TEST_F(CorrectorTest, RowsAddedDuringACallLeaveAsOneBatchWithTheFullPrompt)
{
    provider->hold();
    corrector->add(1, u"첫 문장"_s);
    ASSERT_TRUE(provider->waitForCalls(1));
    corrector->add(2, u"둘째"_s);
    corrector->add(3, u"셋째"_s);
    corrector->add(4, u"넷째"_s);
    QCoreApplication::processEvents();
    EXPECT_EQ(provider->calls().size(), 1);
    provider->release();
    ASSERT_TRUE(runEventsUntil([this] { return fixes.size() == 4; }));
    EXPECT_EQ(fixes, QStringList({u"1 첫 문장 | 译"_s, u"2 둘째 | 译"_s, u"3 셋째 | 译"_s, u"4 넷째 | 译"_s}));
    const QList<FakeProvider::Call> calls = provider->calls();
    ASSERT_EQ(calls.size(), 2);
    EXPECT_EQ(Corrections::sentences(calls[0].prompt()), QStringList{u"첫 문장"_s});
    EXPECT_EQ(contextOf(calls[0].prompt()), QString());
    EXPECT_EQ(calls[1].system, uR"P(You correct speech-recognition errors in lecture transcripts and translate them precisely. You reply with JSON only.)P"_s);
    ASSERT_EQ(calls[1].turns.size(), 1);
    EXPECT_EQ(calls[1].turns[0].role, u"user"_s);
    EXPECT_TRUE(calls[1].turns[0].attachments.isEmpty());
    EXPECT_EQ(calls[1].prompt(), uR"P(Live transcript of a university lecture in Korean (it may contain some English).
Speech recognition often writes a similar-sounding wrong word: a common word instead of a subject term,
a name instead of a word, or a number heard as a word (e.g. 백만 원 → 배만 원).

Earlier sentences (already corrected, oldest first):
<context>
첫 문장
</context>

New sentences, as a JSON array:
["둘째","셋째","넷째"]

For each sentence:
1. "text": fix only words that were clearly misheard, using the context and the subject. Do not rephrase,
   shorten, complete or add anything; if it is fine, keep it exactly as it is.
2. "translation": translate the fixed sentence into Simplified Chinese. It must read like something written
   in Simplified Chinese from the start: rebuild the word order the way a native speaker would say it (do not
   follow the source language's word order), use that language's punctuation, and split or join clauses so it
   reads smoothly. Translate the meaning, not the words: idioms and set phrases become the expression a native
   speaker would actually use (e.g. "adds a little intrigue" → "多了一点悬念", not "增添了一点阴谋").
   Keep the meaning exact and translate subject terms correctly; drop filler words (어, 음, 그, 자, um, uh). An unfinished sentence stays unfinished; add nothing that was not said.
Reply with only a JSON array of the same length, in order: [{"text": "...", "translation": "..."}, ...])P"_s);

    // A reply for a Corrector dropped meanwhile still arrives.
    provider->hold();
    corrector->add(7, u"마지막 줄"_s);
    ASSERT_TRUE(provider->waitForCalls(3));
    corrector.reset();
    provider->release();
    ASSERT_TRUE(runEventsUntil([this] { return fixes.size() == 5; }));
    EXPECT_EQ(fixes.last(), u"7 마지막 줄 | 译"_s);

    // A cancelled one drops the rows waiting and the reply still to come.
    corrector = Corrector::make(provider, u"Korean"_s, u"Simplified Chinese"_s);
    corrector->onFix = [this](int id, const QString &text, const QString &) { fixes << QString::number(id) + text; };
    provider->hold();
    corrector->add(8, u"늦은 줄"_s);
    ASSERT_TRUE(provider->waitForCalls(4));
    corrector->add(9, u"기다리는 줄"_s);
    corrector->cancel();
    provider->release();
    Http::taskPool().waitForDone();
    runEventsFor(std::chrono::milliseconds(50));
    EXPECT_EQ(fixes.size(), 5);
    EXPECT_EQ(provider->calls().size(), 4);
}

TEST_F(CorrectorTest, RepliesAreReadOutOfChatterAndFencesAndUnusableOnesAreLogged)
{
    const QString fixed = Corrections::reply({{u"고친 문장"_s, u"改好的句子"_s}});
    // (reply, row, what is delivered if anything)
    const QList<std::tuple<std::optional<QString>, QString, QString>> replies{
        {u"Here you go:\n```json\n"_s + fixed + u"\n```\nHope this helps."_s, u"고칠 문장"_s, u"고친 문장 | 改好的句子"_s},
        // A number where text belongs reads as its written form; both fields are trimmed.
        {u"```\n[{\"text\": 42, \"translation\": \"  四十二\\n\"}]\n```"_s, u"42"_s, u"42 | 四十二"_s},
        // A bracket in the chatter after the array spoils the cut; so do a wrong count and shape.
        {fixed + u" [sic]"_s, u"고칠 문장"_s, {}},
        {Corrections::reply({{u"a"_s, u"一"_s}, {u"b"_s, u"二"_s}}), u"a"_s, {}},
        {u"[\"a\"]"_s, u"a"_s, {}},
        {u"] backwards ["_s, u"a"_s, {}},
        {std::nullopt, u"a"_s, {}},
        {u"（连不上 Fake，检查网络）"_s, u"a"_s, {}},
        {u"<html>"_s + QString(300, u'x'), u"a"_s, {}},
    };
    QStringList delivered;
    for (int i = 0; i < int(replies.size()); ++i) {
        const auto &[reply, row, fix] = replies[i];
        provider->enqueue(reply);
        corrector->add(i, row);
        ASSERT_TRUE(waitForCalls(i + 1));
        if (!fix.isEmpty())
            delivered << u"%1 %2"_s.arg(i).arg(fix);
    }
    finish();
    EXPECT_EQ(fixes, delivered);
    // The rows of an unusable reply become context as they were sent.
    EXPECT_EQ(nextContext(), u"고친 문장\n42\n고칠 문장\na\na\na\na\na\na\nsentinel row"_s);
    const QString log = QString::fromUtf8(readFile(Log::path()));
    EXPECT_EQ(log.count(u"no usable reply"_s), 7);
    for (const auto &[reply, row, fix] : replies) {
        const QString logged = reply ? reply->left(200) : u"nil"_s;
        EXPECT_EQ(log.contains(u" AI 纠错 no usable reply: "_s + logged + u'\n'), fix.isEmpty()) << logged.toStdString();
    }
}

} // namespace
