#include "EngineFixture.h"

#include "engine/Prompts.h"

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// A main provider that only sets the context budget; it is never asked anything.
class BudgetProvider final : public AIProvider
{
public:
    QString displayName() const override { return u"Budget"_s; }
    int contextChars() const override { return 40; }
    std::optional<QString> chat(const QString &, const QList<Turn> &) const override
    {
        ADD_FAILURE() << "the main provider serves no live call";
        return std::nullopt;
    }
};

QStringList numbered(const QString &pattern, int from, int to)
{
    QStringList lines;
    for (int i = from; i <= to; ++i)
        lines << pattern.arg(i);
    return lines;
}

// Distinct Korean lines whose keys differ.
QStringList koreanLines(int from, int count)
{
    QStringList lines;
    for (int i = from; i < from + count; ++i)
        lines << u"강의 내용 "_s + QChar(0xAC00 + 3 * i) + QChar(0xAC01 + 5 * i) + u" 부분입니다"_s;
    return lines;
}

// "<tag>", the text and "</tag>" on lines of their own, as prompts quote.
QString tagged(const QString &tag, const QString &text)
{
    return u'<' + tag + u">\n" + text + u"\n</" + tag + u'>';
}

} // namespace

TEST_F(EngineTest, QuestionIsBatchedAskedOnceAndShownUnlessSkipped)
{
    startWith(micConfig());
    const QString answer = u"It measures disorder.\n意思：它衡量无序程度。"_s;
    fake->enqueue(answer);
    pass({u"Good morning everyone."_s, u"What is entropy in this system?"_s});
    pass({u"Think about it."_s});
    EXPECT_TRUE(fake->calls().isEmpty());
    pass({u"Take your time."_s});
    ASSERT_EQ(fake->calls().size(), 1);
    const FakeProvider::Call call = fake->calls().first();
    EXPECT_EQ(call.system, Prompts::system(micConfig()));
    ASSERT_EQ(call.turns.size(), 1);
    EXPECT_EQ(call.turns[0].role, u"user"_s);
    EXPECT_TRUE(call.turns[0].attachments.isEmpty());
    // Sent 0.6 s after the question, with the transcript as it is then.
    EXPECT_EQ(call.prompt(), uR"P(Recent transcript (oldest first):
<transcript>
Good morning everyone.
What is entropy in this system?
Think about it.
Take your time.
</transcript>

Sentences that may be questions (question words or endings, or a question mark), detected over the last
few seconds; some may still be unfinished. Live captions often contain several drafts of the same sentence;
treat near-duplicates as one:
<sentences>
What is entropy in this system?
</sentences>

Already shown to the student (do not repeat these):
<already_shown>
(nothing yet)
</already_shown>

Decide whether the teacher is asking the students something they could answer — including
"do you know ...?" questions addressed to the class. Skip only clear non-questions: tag questions
like "right?", the teacher talking to themself, or transitions like "shall we look at the next one?".
When in doubt, answer: a needless answer costs the student a glance, a missed question costs more.

Answer only the most recent real question that has not already been shown.
If there is none, reply with exactly: SKIP

Otherwise reply in exactly two lines (the student already sees the question in the live translation):
<suggested answer in English>
意思：<meaning in Simplified Chinese>)P"_s);
    ASSERT_EQ(seen().results.size(), 1);
    const Seen::Result result = seen().results.first();
    EXPECT_EQ(result.kind, Engine::questionKind);
    EXPECT_EQ(result.text, answer);
    EXPECT_EQ(result.time, clock->now().toLocalTime().toString(u"HH:mm"_s));

    // Heard again it isn't asked again; a tag question and a question word inside a sentence ask nothing.
    pass({u"What is entropy in this system?"_s, u"Entropy always grows, right?"_s, u"So what is entropy"_s});
    pass({u"Let us go on."_s}, 1s);
    EXPECT_EQ(fake->calls().size(), 1);

    // Blank replies, "SKIP" and refusals show nothing; a failure text is a card. The last five
    // cards are named as shown.
    const QList<std::optional<QString>> replies{u"  SKIP \n"_s, QString(), std::nullopt, u"SKIP."_s,
                                                u"（无法连接 Fake）"_s, u"A1"_s, u"A2"_s, u"A3"_s, u"SKIP"_s};
    for (int i = 0; i < int(replies.size()); ++i) {
        fake->enqueue(replies[i]);
        pass({u"Which law comes now, number %1?"_s.arg(QChar(u'A' + i))});
        pass({u"Go on."_s}, 1s);
    }
    QStringList shown;
    for (const Seen::Result &card : seen().results)
        shown << card.text;
    EXPECT_EQ(shown, QStringList({answer, u"SKIP."_s, u"（无法连接 Fake）"_s, u"A1"_s, u"A2"_s, u"A3"_s}));
    EXPECT_TRUE(fake->calls().last().prompt().contains(
        u"<already_shown>\nSKIP.\n\n（无法连接 Fake）\n\nA1\n\nA2\n\nA3\n</already_shown>"_s));
    EXPECT_EQ(fake->calls().size(), 10);
}

TEST_F(EngineTest, DraftQuestionIsAskedOnceSettledAndNothingIsAskedWhileSwitchedOff)
{
    startWith(micConfig());
    // Heard while switched off, a question or notice keeps its key and isn't asked when repeated.
    engine->setSwitches({.questions = false, .exams = false, .keyPoints = false, .vocabulary = false});
    source->setDraft(u"Does anyone know why entropy grows?"_s);
    pass();
    pass({u"Why does entropy grow?"_s, u"The exam is next Monday."_s});
    pass({u"Fine."_s}, 2s);
    engine->setSwitches(Switches{});
    pass({u"Why does entropy grow?"_s, u"The exam is next Monday."_s});
    pass({u"Fine again."_s}, 2s);

    // A draft asks only with its mark; a draft seen while off was never looked at. Another
    // draft of the same sentence has the same last ten letters. No line needs to come.
    source->setDraft(u"Does anyone know why entropy grows"_s);
    pass();
    source->setDraft(u"Does anyone know why entropy grows?"_s);
    pass();
    source->setDraft(u"So, does anyone know why entropy grows?"_s);
    pass();
    EXPECT_TRUE(fake->calls().isEmpty());
    pass();
    ASSERT_EQ(fake->calls().size(), 1);
    EXPECT_TRUE(fake->calls().first().prompt().contains(
        tagged(u"sentences"_s, u"Does anyone know why entropy grows?"_s)));
}

TEST_F(EngineTest, CardsComeWhileTheRoomIsSilentButTheSummaryWaitsForLines)
{
    Config config = micConfig();
    config.recordKeyPoints = true;
    startWith(config);
    // A question, then students thinking: asked once it has settled, 0.6 s on.
    pass({u"Good morning."_s, u"Why does ice float on water?"_s});
    pass();
    EXPECT_TRUE(callsContaining(u"may be questions"_s).isEmpty());
    pass();
    EXPECT_EQ(callsContaining(u"may be questions"_s).size(), 1);

    // A notice as the last words before silence: sent 1.5 s on.
    pass({u"The homework is due next Friday."_s});
    pass({}, 1200ms);
    EXPECT_TRUE(callsContaining(u"exam/homework/schedule keyword"_s).isEmpty());
    pass();
    EXPECT_EQ(callsContaining(u"exam/homework/schedule keyword"_s).size(), 1);

    // Three lines and a long silence: the summary comes with the next line, not before.
    pass({}, 120s);
    EXPECT_TRUE(callsContaining(u"running summary"_s).isEmpty());
    pass({u"Let us go on."_s});
    EXPECT_EQ(callsContaining(u"running summary"_s).size(), 1);
}

TEST_F(EngineTest, NoticeAndDatedEvents)
{
    startWith(micConfig());
    QString noticeReply = u"期中考试：4月20日，第一到五章。"_s;
    std::optional<QString> eventsReply = uR"(Events: [
        {"title": "期中考试", "date": "2026-04-20", "time": "after class", "note": "第一到五章"},
        {"title": "期中复习", "date": "2026-04-20", "time": "10:00", "note": ""},
        {"title": "作业", "date": "next week", "time": "", "note": ""},
        {"title": "Quiz", "date": "2026-03-09", "time": "9:30", "note": null}
    ])"_s;
    // Replies change only while no call runs: each pass waits for the calls it started.
    fake->setHandler([&](const FakeProvider::Call &call) {
        return call.prompt().contains(u"announce a date"_s) ? eventsReply : std::optional(noticeReply);
    });
    // Sent 1.5 s after the notice.
    pass({u"The midterm exam is on April 20th."_s});
    pass({u"Please prepare."_s}, 1s);
    EXPECT_TRUE(fake->calls().isEmpty());
    pass({u"Chapters one to five."_s}, 500ms);
    const auto notices = callsContaining(u"exam/homework/schedule keyword"_s);
    const auto dates = callsContaining(u"Sentences that may announce a date"_s);
    ASSERT_EQ(notices.size(), 1);
    ASSERT_EQ(dates.size(), 1);
    EXPECT_EQ(notices[0].prompt(), uR"P(Recent transcript (oldest first):
<transcript>
The midterm exam is on April 20th.
Please prepare.
Chapters one to five.
</transcript>

Sentences that matched an exam/homework/schedule keyword over the last few seconds
(live captions often contain several drafts of the same sentence):
<sentences>
The midterm exam is on April 20th.
</sentences>

Already shown to the student (do not repeat these):
<already_shown>
(nothing yet)
</already_shown>

Decide whether the teacher is actually announcing something about exams, assignments, deadlines,
attendance, class schedule, or hinting what will be on a test. Words like 시험 can also mean "experiment",
and 발표 can mean "published", so read the context.

If it is NOT such an announcement, or everything in it was already shown, reply with exactly: SKIP

Otherwise reply in Simplified Chinese in one to three short lines listing only the facts stated
(what, when, format, how to submit). Note anything that is unclear instead of guessing.)P"_s);
    EXPECT_EQ(dates[0].prompt(), uR"P(Recent transcript (oldest first):
<transcript>
The midterm exam is on April 20th.
Please prepare.
Chapters one to five.
</transcript>

Sentences that may announce a date:
<sentences>
The midterm exam is on April 20th.
</sentences>

Today is Monday, 03/02/2026. List only what the teacher is actually announcing with a date you can determine:
exams, quizzes, assignment or report deadlines, presentations, cancelled or extra classes.
Resolve relative dates ("next Tuesday", "in two weeks") from today. Ignore dates in the lecture content itself
(history, examples). Title: very short, in Simplified Chinese (e.g. "期中考试", "第三章作业截止").
Reply with a JSON array only, [] if none:
[{"title": "...", "date": "YYYY-MM-DD", "time": "HH:mm or empty", "note": "scope / where / what to bring, or empty"}])P"_s);
    ASSERT_EQ(seen().results.size(), 1);
    EXPECT_EQ(seen().results[0].kind, Engine::noticeKind);
    EXPECT_EQ(seen().results[0].text, noticeReply);
    // A time that isn't one is dropped, a date that isn't one drops the event, and a second event
    // on the same date whose title begins alike is the same event.
    EXPECT_EQ(seen().events, QList<ClassEvent>({{u"期中考试"_s, u"2026-04-20"_s, std::nullopt, u"第一到五章"_s},
                                                {u"Quiz"_s, u"2026-03-09"_s, u"9:30"_s, std::nullopt}}));

    // A teacher who keeps announcing is heard out for six seconds at most.
    noticeReply = u"SKIP"_s;
    const QStringList announcements{u"Homework one is due on Friday."_s, u"Submit it on the LMS."_s,
                                    u"The quiz is next Monday."_s,      u"The project starts next week."_s,
                                    u"Presentations come later."_s,     u"The final exam is in June."_s,
                                    u"Check your homework twice."_s};
    pass({QString(3500, u'x') + u'.', announcements[0]}, 1s);
    for (qsizetype i = 1; i + 1 < announcements.size(); ++i)
        pass({announcements[i]}, 1s);
    EXPECT_EQ(fake->calls().size(), 2);
    pass({announcements.last()}, 1s);
    ASSERT_EQ(fake->calls().size(), 4);
    const QString notice = callsContaining(u"keyword"_s).last().prompt();
    EXPECT_TRUE(notice.contains(tagged(u"sentences"_s, announcements.join(u'\n'))));
    // The events call sees the last 3000 characters of the context window.
    const QString window = engine->recentTranscript(6000, 40);
    EXPECT_TRUE(notice.contains(tagged(u"transcript"_s, window)));
    const QString events = callsContaining(u"announce a date"_s).last().prompt();
    EXPECT_TRUE(events.contains(tagged(u"transcript"_s, window.right(3000))));

    // A failure text is a card; an event delivered before isn't delivered again.
    noticeReply = u"（无法连接 Fake）"_s;
    eventsReply = uR"([{"title": "期中考试", "date": "2026-04-20", "time": "14:00"},
                      {"title": "Lab report", "date": "2026-03-20"}])"_s;
    pass({u"Remember the deadline."_s});
    pass({u"Good."_s}, 2s);
    ASSERT_EQ(fake->calls().size(), 6);
    EXPECT_TRUE(callsContaining(u"keyword"_s).last().prompt().contains(
        u"<already_shown>\n期中考试：4月20日，第一到五章。\n</already_shown>"_s));
    EXPECT_EQ(seen().events.mid(2), QList<ClassEvent>({{u"Lab report"_s, u"2026-03-20"_s, {}, {}}}));
    EXPECT_EQ(seen().results.last().text, noticeReply);
}

TEST_F(EngineTest, RunningSummaryWithTheFullPrompt)
{
    Config config = micConfig();
    config.recordKeyPoints = true;
    startWith(config);
    const QString summary = u"熵\n- 熵衡量无序程度"_s;
    fake->setHandler([&](const FakeProvider::Call &) { return summary; });
    const QStringList eight = numbered(u"Point number %1 of the lecture."_s, 1, 8);
    pass(eight.mid(0, 7));
    EXPECT_TRUE(fake->calls().isEmpty());
    pass(eight.mid(7));
    ASSERT_EQ(fake->calls().size(), 1);
    EXPECT_EQ(fake->calls()[0].prompt(), uR"P(You keep a running summary of a university lecture while it is happening.

Summary so far:
<summary>
(none yet)
</summary>

What the teacher said since then (live transcript, oldest first; may contain recognition errors):
<transcript>
)P"_s + eight.join(u'\n') + uR"P(
</transcript>

Write the updated summary of the whole class so far, in Simplified Chinese: the earlier points (kept, merged
where they continue) plus what is new. Group by topic with a short heading line for each topic, then "- " bullets:
definitions, claims, causes and effects, examples, formulas. Keep subject terms in the original language in
parentheses where useful. Mark anything about exams, assignments or deadlines with ⚠️. At most about 20 bullets;
no introduction or closing remarks. If nothing worth noting has been said yet, reply with exactly: SKIP)P"_s);
    EXPECT_EQ(seen().summaries, QStringList({summary}));
    EXPECT_EQ(engine->currentSummary(), summary);

    // A failure text or "SKIP" never replaces the summary.
    fake->enqueue(u"（无法连接 Fake）"_s);
    fake->enqueue(u"\nSKIP\n"_s);
    pass(numbered(u"More point %1."_s, 1, 8));
    pass(numbered(u"Further point %1."_s, 1, 8));
    ASSERT_EQ(fake->calls().size(), 3);
    EXPECT_TRUE(fake->calls()[1].prompt().contains(tagged(u"summary"_s, summary)));
    EXPECT_EQ(seen().summaries.size(), 1);
    EXPECT_EQ(engine->currentSummary(), summary);

    // What is said while the switch is off never enters the summary.
    engine->setSwitches({.questions = true, .exams = true, .keyPoints = false, .vocabulary = false});
    pass(numbered(u"Said while off %1."_s, 1, 10), 3600s);
    engine->setSwitches({.questions = true, .exams = true, .keyPoints = true, .vocabulary = false});
    pass(numbered(u"After %1."_s, 1, 3));
    EXPECT_EQ(fake->calls().size(), 3);
    pass(numbered(u"After %1."_s, 4, 8));
    ASSERT_EQ(fake->calls().size(), 4);
    EXPECT_TRUE(fake->calls()[3].prompt().contains(
        tagged(u"transcript"_s, numbered(u"After %1."_s, 1, 8).join(u'\n'))));

    // Of what is new, the last 8000 characters.
    QStringList longer = numbered(u"Later %1."_s, 1, 8);
    longer[0] = QString(9000, u's');
    pass(longer);
    ASSERT_EQ(fake->calls().size(), 5);
    EXPECT_TRUE(fake->calls()[4].prompt().contains(tagged(u"transcript"_s, longer.join(u'\n').right(8000))));
}

TEST_F(EngineTest, SummaryAndVocabularyKeepTheirPaceAndOneCallEach)
{
    Config config = windowConfig();
    config.recordKeyPoints = true;
    config.recordVocabulary = true;
    make(config, nullptr, fake);
    QStringList screen = koreanLines(0, 3);
    source->show(screen.join(u'\n'));
    start();
    const auto summaryCalls = [&] { return callsContaining(u"running summary"_s).size(); };
    const auto vocabularyCalls = [&] { return callsContaining(u"Pick out only the difficult"_s).size(); };
    const auto showMore = [&](int from, int count) {
        screen << koreanLines(from, count);
        source->show(screen.join(u'\n'));
    };

    // The window shows the same three lines pass after pass: a summary after 60 s, vocabulary after 90 s.
    pass({}, 58500ms);
    EXPECT_TRUE(fake->calls().isEmpty());
    pass({}, 1500ms);
    EXPECT_EQ(summaryCalls(), 1);
    pass({}, 28500ms);
    EXPECT_EQ(vocabularyCalls(), 0);
    pass({}, 1500ms);
    EXPECT_EQ(vocabularyCalls(), 1);
    EXPECT_TRUE(fake->calls().last().prompt().contains(tagged(u"transcript"_s, screen.join(u'\n'))));

    // While a call of each runs, the loop goes on but no second one starts.
    fake->hold();
    showMore(3, 8);
    step({}, 1500ms);
    ASSERT_TRUE(fake->waitForCalls(4));
    showMore(11, 8);
    step({}, 1500ms);
    fake->release();
    settle();
    EXPECT_EQ(fake->calls().size(), 4);
    pass({}, 1500ms);
    EXPECT_EQ(summaryCalls(), 3);
    EXPECT_EQ(vocabularyCalls(), 3);

    // Two new lines never make a summary, however long the wait; they do make a vocabulary call.
    showMore(19, 2);
    pass({}, 600s);
    pass({}, 600s);
    EXPECT_EQ(summaryCalls(), 3);
    EXPECT_EQ(vocabularyCalls(), 4);
}

TEST_F(EngineTest, VocabularyWithTheFullPromptAndFreshTermsOnly)
{
    Config config = micConfig();
    config.recordVocabulary = true;
    startWith(config);
    const auto termsAfter = [&](std::optional<QString> reply, const QStringList &lines) {
        fake->enqueue(std::move(reply));
        pass(lines);
        return seen().terms;
    };
    const QStringList lines = numbered(u"First part, line %1."_s, 1, 6);
    const QList<QList<VocabularyTerm>> first = termsAfter(
        uR"(Here you go: [{"term": " Entropy ", "meaning": "熵", "note": "无序程度"},
        {"term": "entropy", "meaning": "熵"}, {"term": "", "meaning": "空"}, {"term": 5, "meaning": "五"}] Done.)"_s,
        lines);
    ASSERT_EQ(fake->calls().size(), 1);
    EXPECT_EQ(fake->calls()[0].prompt(), uR"P(Live transcript of a university lecture in English (oldest first; may contain recognition errors):
<transcript>
)P"_s + lines.join(u'\n') + uR"P(
</transcript>

Terms already in the student's word list (do not repeat):
(none)

Pick out only the difficult, subject-specific terms from this part: technical vocabulary of the field,
named concepts, theories, laws, formulas, jargon a non-specialist would not know. Leave out everyday words,
common verbs and adjectives, function words, numbers, names of people or places (unless they name a concept),
and anything the student would already know from general language. Usually 0 to 4 terms; quality over quantity.
Fix obvious recognition errors in the term itself.

Reply with only a JSON array: [{"term": "<as used in class, original language>", "meaning": "<Simplified Chinese
translation>", "note": "<one short Simplified Chinese line: what it means in this subject>"}]. If there are none, reply [].)P"_s);
    // Two spellings in one reply are both new; known terms are compared letter case aside.
    EXPECT_EQ(first, QList<QList<VocabularyTerm>>({{{u"Entropy"_s, u"熵"_s, u"无序程度"_s},
                                                    {u"entropy"_s, u"熵"_s, QString()}}}));
    const auto second = termsAfter(uR"([{"term": "ENTROPY", "meaning": "熵", "note": ""},
        {"term": "Enthalpy", "meaning": "焓", "note": "热含量"}])"_s, numbered(u"Second part, line %1."_s, 1, 6));
    EXPECT_TRUE(fake->calls()[1].prompt().contains(u"(do not repeat):\nEntropy, entropy\n"_s));
    ASSERT_EQ(second.size(), 2);
    EXPECT_EQ(second[1], QList<VocabularyTerm>({{u"Enthalpy"_s, u"焓"_s, u"热含量"_s}}));

    // The prompt names the last 150 known terms only.
    QStringList many;
    for (int i = 0; i <= 150; ++i)
        many << uR"({"term": "T%1"})"_s.arg(i);
    termsAfter(u'[' + many.join(u',') + u']', numbered(u"Long list line %1."_s, 1, 6));
    QStringList last = numbered(u"Final line %1."_s, 1, 6);
    last[0] = QString(7000, u'v');
    termsAfter(u"[]"_s, last);
    const QString prompt = fake->calls().last().prompt();
    EXPECT_TRUE(prompt.contains(u"(do not repeat):\nT1, T2, "_s));
    EXPECT_TRUE(prompt.contains(u", T150\n"_s));
    EXPECT_FALSE(prompt.contains(u"T0,"_s));
    // Of what is new, the last 6000 characters.
    EXPECT_TRUE(prompt.contains(tagged(u"transcript"_s, last.join(u'\n').right(6000))));
}

TEST_F(EngineTest, WithoutProvidersLinesAndTheClassEndStillWork)
{
    Config config = micConfig();
    config.recordKeyPoints = true;
    config.recordVocabulary = true;
    make(config, nullptr, nullptr);
    start();
    QStringList lines = numbered(u"Plain line %1."_s, 1, 8);
    lines << u"What is entropy?"_s << u"The exam is next Monday."_s << u"See you next week."_s;
    pass(lines);
    // A closing phrase ends the class once, and only after five minutes.
    pass({u"OK, see you next week."_s}, 298500ms);
    EXPECT_EQ(seen().classEnds, 0);
    pass({u"See you next week then."_s}, 2100ms);
    EXPECT_EQ(seen().classEnds, 1);
    pass({u"That's all for today."_s});
    const Seen reported = seen();
    EXPECT_EQ(reported.classEnds, 1);
    EXPECT_EQ(reported.lines.size(), 14);
    EXPECT_TRUE(reported.results.isEmpty());
    EXPECT_TRUE(reported.summaries.isEmpty());
    EXPECT_TRUE(reported.terms.isEmpty());
    EXPECT_TRUE(reported.events.isEmpty());

    // Callbacks nobody set do nothing, whichever call answers.
    make(config, nullptr, fake);
    static_cast<EngineCallbacks &>(*engine) = EngineCallbacks();
    fake->setHandler([](const FakeProvider::Call &) {
        return uR"([{"term": "Entropy", "title": "Quiz", "date": "2026-03-10"}])"_s;
    });
    source->setDraft(u"What is entropy, really?"_s);
    start();
    pass(lines);
    pass({u"See you next week."_s}, 301s);
    EXPECT_EQ(fake->calls().size(), 5);  // a card, a notice, its events, a summary and vocabulary
}

TEST_F(EngineTest, ContextWindowIsTheLastFortyLinesWithinTheMainProvidersBudget)
{
    QStringList all = numbered(u"Line %1."_s, 1, 44);
    all << u"What is line forty-five?"_s << u"Go on."_s;
    const QString lastForty = all.mid(all.size() - 40).join(u'\n');
    // (main, fast, budget): 6000 characters without a main provider; a main provider alone serves too.
    const QList<std::tuple<std::shared_ptr<const AIProvider>, std::shared_ptr<const AIProvider>, int>> setups{
        {nullptr, fake, 6000}, {std::make_shared<BudgetProvider>(), fake, 40}, {fake, nullptr, 6000}};
    for (qsizetype i = 0; i < setups.size(); ++i) {
        const auto &[provider, fast, budget] = setups[i];
        make(micConfig(), provider, fast);
        start();
        pass(all.mid(0, 45));
        pass({all.last()}, 1s);
        ASSERT_EQ(fake->calls().size(), i + 1);
        EXPECT_TRUE(fake->calls()[i].prompt().startsWith(u"Recent transcript (oldest first):\n"_s
                                                         + tagged(u"transcript"_s, lastForty.right(budget))));
    }
}
