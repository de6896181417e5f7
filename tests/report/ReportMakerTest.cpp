#include "EventLoop.h"
#include "FakeProvider.h"
#include "QtPrinters.h"
#include "report/ReportMaker.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(ReportMaker, AsksOnceWithTheWholePromptInOneUserTurn)
{
    const auto provider = std::make_shared<FakeProvider>();
    provider->enqueue(u"```json\n{\"notes\": \" 笔记 \", \"events\": []}\n```"_s);
    QObject context;
    std::optional<std::optional<ClassReport>> result;
    ReportMaker::make(provider, u"SYS"_s, u"draft"_s, u"the transcript"_s, u"zh"_s, &context,
                      [&](const std::optional<ClassReport> &report) { result = report; }, QDate(2026, 11, 18));
    ASSERT_TRUE(runEventsUntil([&] { return result.has_value(); }));
    EXPECT_EQ(*result, (ClassReport{u"笔记"_s, {}, std::nullopt}));

    const QString expected = uR"(A lecture has ended. Full transcript (live speech recognition, oldest first; may contain recognition errors):
<transcript>
the transcript
</transcript>

Draft class notes written from it:
<notes>
draft
</notes>

The class took place on Wednesday, 11/18/2026. Do three things carefully:

1. VERIFY the notes against the transcript, point by point. Delete anything the transcript does not support,
   correct wrong facts, numbers, names and terms (fix recognition errors from context), and add anything
   important that was missed. Keep the same structure and language (zh).
2. EVENTS: every exam, quiz, assignment, deadline, presentation or class change the teacher actually stated
   with a date you can determine. Resolve relative dates ("next Tuesday", "in two weeks") from the class date.
   Skip anything without a determinable date. Titles short, in zh.
3. MIND MAP of the whole class: the topic at the root, 3–7 main branches in teaching order, each with
   2–5 short children (a third level only where it really helps). Labels very short (a few words), in zh.

Reply with JSON only, no code fences:
{"notes": "...", "events": [{"title": "...", "date": "YYYY-MM-DD", "time": "HH:mm or empty", "note": "..."}],
 "mindmap": {"t": "...", "c": [{"t": "...", "c": [{"t": "..."}]}]}})"_s;
    ASSERT_EQ(provider->calls().size(), 1);
    const FakeProvider::Call call = provider->calls().first();
    EXPECT_EQ(call.system, u"SYS"_s);
    ASSERT_EQ(call.turns.size(), 1);
    EXPECT_EQ(call.turns[0].role, u"user"_s);
    EXPECT_TRUE(call.turns[0].attachments.isEmpty());
    EXPECT_EQ(call.prompt(), expected);
}

TEST(ReportMaker, UsesOnlyRepliesThatHoldAWholeReport)
{
    const ClassEvent quiz{u"Quiz"_s, u"2026-03-09"_s, u"9:30"_s, std::nullopt};
    const ClassEvent allDay{u"Essay"_s, u"2026-13-40"_s, std::nullopt, u"form only"_s};
    const std::optional<ClassReport> none;
    const struct
    {
        const char *reply;
        std::optional<ClassReport> expected;
    } cases[] = {
        {R"(Here you go: ```{"notes": "N", "events": [], "mindmap": {"t": "Root"}}``` done)",
         ClassReport{u"N"_s, {}, MindNode{u"Root"_s, std::nullopt}}},
        {R"({"notes": "A", "events": []} {"notes": "B", "events": []})", none},
        {R"({"notes": "good notes"})", none},
        {"{\"notes\": \" \\n\\t \", \"events\": [{\"title\": \"Quiz\", \"date\": \"2026-03-09\"}]}", none},
        {R"({"notes": "N", "events": [{"title": "Quiz", "date": "2026-03-09", "time": "9:30"},
             {"title": "Trip", "date": "next Friday"},
             {"title": "Essay", "date": "2026-13-40", "time": "", "note": "form only"}]})",
         ClassReport{u"N"_s, {quiz, allDay}, std::nullopt}},
        {R"({"notes": "N", "events": [{"title": "Exam", "date": "2026-03-09", "time": "09:30:00"},
             {"title": "Talk", "date": "2026-03-10", "time": "after lunch"}]})",
         ClassReport{u"N"_s,
                     {{u"Exam"_s, u"2026-03-09"_s, std::nullopt, std::nullopt},
                      {u"Talk"_s, u"2026-03-10"_s, std::nullopt, std::nullopt}},
                     std::nullopt}},
        {R"({"notes": "N", "events": [{"title": 3, "date": "2026-03-09"}]})", none},
        {R"({"notes": "N", "events": [], "mindmap": {"c": []}})", none},
        {"（服务暂时不可用）", none},
        {"} nothing {", none},
        {"not json at all", none},
    };
    for (const auto &[reply, expected] : cases)
        EXPECT_EQ(ReportMaker::read(QString::fromUtf8(reply)), expected) << reply;
    EXPECT_FALSE(ReportMaker::read(std::nullopt)) << "a refusal";

    const auto nested = [](int levels) -> QString {
        return u"{\"notes\": \"N\", \"events\": [], \"mindmap\": "_s
               + QString(u"{\"t\": \"x\", \"c\": ["_s).repeated(levels) + u"{\"t\": \"leaf\"}"_s
               + QString(u"]}"_s).repeated(levels) + u"}"_s;
    };
    EXPECT_TRUE(ReportMaker::read(nested(12)));
    EXPECT_FALSE(ReportMaker::read(nested(100))) << "deeper than any class";

    const QString huge = QString(u"x"_s).repeated(2 * 1024 * 1024);
    const auto big = ReportMaker::read(u"{\"notes\": \"" + huge + u"\", \"events\": []}");
    ASSERT_TRUE(big);
    EXPECT_EQ(big->notes.size(), huge.size());
}
