#include "QtPrinters.h"
#include "engine/Prompts.h"
#include "settings/Config.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(Prompts, FillReplacesPlainlyAndLeavesUnknownPlaceholders)
{
    const QString text = u"{a} and {a}, {b}, {missing}"_s;
    EXPECT_EQ(Prompts::fill(text, {{u"a"_s, u"x"_s}, {u"b"_s, u"$1 \\n {}"_s}, {u"unused"_s, u"y"_s}}),
              u"x and x, $1 \\n {}, {missing}"_s);
    EXPECT_EQ(Prompts::fill(text, {}), text);
    // A value is never read as a placeholder, whatever the order of the entries.
    EXPECT_EQ(Prompts::fill(u"{lines} then {sentences} {"_s, {{u"lines"_s, u"said {sentences} and {lines}"_s},
                                                             {u"sentences"_s, u"S"_s}}),
              u"said {sentences} and {lines} then S {"_s);
}

TEST(Prompts, SystemForTheConfiguredLanguagesAndProfile)
{
    Config config;
    config.lectureLanguage = u"Korean"_s;
    config.answerLanguage = u"Simplified Chinese"_s;
    config.profile = u"A physics student."_s;
    // Languages go in by their English names, never by their labels.
    EXPECT_EQ(Prompts::system(config), uR"P(You are a quiet in-class assistant for a university student.
The lecture is in Korean. The student reads your output in Simplified Chinese on their laptop during class.
About the student: A physics student.

The transcript you receive comes from live speech recognition or screen OCR, so it contains
recognition mistakes and garbage characters. Infer the intended words; ignore garbage.

Style rules:
- Be brief. The student glances at your output for a few seconds.
- Anything the student should say out loud: one or two short, natural Korean sentences,
  simple words plus at most one subject term, followed by a line starting with "意思：" giving the meaning in Simplified Chinese.
- Stay close to what the teacher is talking about right now. No long tangents.
- Never invent facts about dates, exams or assignments. Only report what the transcript says.)P"_s);
}

TEST(Prompts, TemplatesOfTheChatAndTheFinalNotes)
{
    EXPECT_EQ(Prompts::fill(Prompts::chat(), {{u"context"_s, QString()}, {u"message"_s, u"What is entropy?"_s}}),
              uR"P(The student is chatting with you from the floating panel during or after class.
Answer what they ask, briefly. Use the lecture transcript below when the question is about the class;
otherwise answer normally.

Recent lecture transcript (oldest first, may be empty):
<transcript>

</transcript>

Student's message:
What is entropy?)P"_s);
    EXPECT_EQ(Prompts::fill(Prompts::finalSummary(), {{u"context"_s, u"line one\nline two"_s},
                                                      {u"summary"_s, u"(none)"_s},
                                                      {u"answer_language"_s, u"Simplified Chinese"_s}}),
              uR"P(The lecture has ended. Full transcript (live speech recognition, oldest first; may contain recognition errors):
<transcript>
line one
line two
</transcript>

Running summary made during class:
<summary>
(none)
</summary>

Write the final class notes in Simplified Chinese for a student reviewing later:
1. One line: what this class was about.
2. The content, grouped by topic in the order taught, each with a short heading and "- " bullets
   (definitions, reasoning, examples, formulas; subject terms in the original language in parentheses).
3. "⚠️ 考试 / 作业" — only what the teacher actually said about exams, assignments, deadlines (omit if nothing).
4. "复习要点" — 3 to 5 things most worth reviewing.
Correct obvious recognition errors from context. No introduction or closing remarks.)P"_s);
}
