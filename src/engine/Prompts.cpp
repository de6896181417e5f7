#include "engine/Prompts.h"

namespace Prompts {

QString fill(const QString &text, const Variables &variables)
{
    QString filled = text;
    for (auto entry = variables.cbegin(); entry != variables.cend(); ++entry)
        filled.replace(u'{' + entry.key() + u'}', entry.value());
    return filled;
}

QString system(const Config &config)
{
    return fill(system(), {{QStringLiteral("lecture_language"), config.lecture().id},
                           {QStringLiteral("answer_language"), config.answer().id},
                           {QStringLiteral("profile"), config.profile}});
}

QString system()
{
    return QStringLiteral(
        "You are a quiet in-class assistant for a university student.\n"
        "The lecture is in {lecture_language}. The student reads your output in {answer_language} on "
        "their laptop during class.\n"
        "About the student: {profile}\n"
        "\n"
        "The transcript you receive comes from live speech recognition or screen OCR, so it "
        "contains\n"
        "recognition mistakes and garbage characters. Infer the intended words; ignore garbage.\n"
        "\n"
        "Style rules:\n"
        "- Be brief. The student glances at your output for a few seconds.\n"
        "- Anything the student should say out loud: one or two short, natural {lecture_language} "
        "sentences,\n"
        "  simple words plus at most one subject term, followed by a line starting with \"意思：\" "
        "giving the meaning in {answer_language}.\n"
        "- Stay close to what the teacher is talking about right now. No long tangents.\n"
        "- Never invent facts about dates, exams or assignments. Only report what the transcript "
        "says.");
}

QString question()
{
    return QStringLiteral(
        "Recent transcript (oldest first):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Sentences that may be questions (question words or endings, or a question mark), detected "
        "over the last\n"
        "few seconds; some may still be unfinished. Live captions often contain several drafts of "
        "the same sentence;\n"
        "treat near-duplicates as one:\n"
        "<sentences>\n"
        "{sentences}\n"
        "</sentences>\n"
        "\n"
        "Already shown to the student (do not repeat these):\n"
        "<already_shown>\n"
        "{recent}\n"
        "</already_shown>\n"
        "\n"
        "Decide whether the teacher is asking the students something they could answer — including\n"
        "\"do you know ...?\" questions addressed to the class. Skip only clear non-questions: tag "
        "questions\n"
        "like \"right?\", the teacher talking to themself, or transitions like \"shall we look at "
        "the next one?\".\n"
        "When in doubt, answer: a needless answer costs the student a glance, a missed question "
        "costs more.\n"
        "\n"
        "Answer only the most recent real question that has not already been shown.\n"
        "If there is none, reply with exactly: SKIP\n"
        "\n"
        "Otherwise reply in exactly two lines (the student already sees the question in the live "
        "translation):\n"
        "<suggested answer in {lecture_language}>\n"
        "意思：<meaning in {answer_language}>");
}

QString notice()
{
    return QStringLiteral(
        "Recent transcript (oldest first):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Sentences that matched an exam/homework/schedule keyword over the last few seconds\n"
        "(live captions often contain several drafts of the same sentence):\n"
        "<sentences>\n"
        "{sentences}\n"
        "</sentences>\n"
        "\n"
        "Already shown to the student (do not repeat these):\n"
        "<already_shown>\n"
        "{recent}\n"
        "</already_shown>\n"
        "\n"
        "Decide whether the teacher is actually announcing something about exams, assignments, "
        "deadlines,\n"
        "attendance, class schedule, or hinting what will be on a test. Words like 시험 can also mean "
        "\"experiment\",\n"
        "and 발표 can mean \"published\", so read the context.\n"
        "\n"
        "If it is NOT such an announcement, or everything in it was already shown, reply with "
        "exactly: SKIP\n"
        "\n"
        "Otherwise reply in {answer_language} in one to three short lines listing only the facts "
        "stated\n"
        "(what, when, format, how to submit). Note anything that is unclear instead of guessing.");
}

QString liveSummary()
{
    return QStringLiteral(
        "You keep a running summary of a university lecture while it is happening.\n"
        "\n"
        "Summary so far:\n"
        "<summary>\n"
        "{summary}\n"
        "</summary>\n"
        "\n"
        "What the teacher said since then (live transcript, oldest first; may contain recognition "
        "errors):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Write the updated summary of the whole class so far, in {answer_language}: the earlier "
        "points (kept, merged\n"
        "where they continue) plus what is new. Group by topic with a short heading line for each "
        "topic, then \"- \" bullets:\n"
        "definitions, claims, causes and effects, examples, formulas. Keep subject terms in the "
        "original language in\n"
        "parentheses where useful. Mark anything about exams, assignments or deadlines with ⚠️. At "
        "most about 20 bullets;\n"
        "no introduction or closing remarks. If nothing worth noting has been said yet, reply with "
        "exactly: SKIP");
}

QString vocabulary()
{
    return QStringLiteral(
        "Live transcript of a university lecture in {lecture_language} (oldest first; may contain "
        "recognition errors):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Terms already in the student's word list (do not repeat):\n"
        "{known}\n"
        "\n"
        "Pick out only the difficult, subject-specific terms from this part: technical vocabulary of "
        "the field,\n"
        "named concepts, theories, laws, formulas, jargon a non-specialist would not know. Leave out "
        "everyday words,\n"
        "common verbs and adjectives, function words, numbers, names of people or places (unless "
        "they name a concept),\n"
        "and anything the student would already know from general language. Usually 0 to 4 terms; "
        "quality over quantity.\n"
        "Fix obvious recognition errors in the term itself.\n"
        "\n"
        "Reply with only a JSON array: [{\"term\": \"<as used in class, original language>\", "
        "\"meaning\": \"<{answer_language}\n"
        "translation>\", \"note\": \"<one short {answer_language} line: what it means in this "
        "subject>\"}]. If there are none, reply [].");
}

QString finalSummary()
{
    return QStringLiteral(
        "The lecture has ended. Full transcript (live speech recognition, oldest first; may contain "
        "recognition errors):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Running summary made during class:\n"
        "<summary>\n"
        "{summary}\n"
        "</summary>\n"
        "\n"
        "Write the final class notes in {answer_language} for a student reviewing later:\n"
        "1. One line: what this class was about.\n"
        "2. The content, grouped by topic in the order taught, each with a short heading and \"- \" "
        "bullets\n"
        "   (definitions, reasoning, examples, formulas; subject terms in the original language in "
        "parentheses).\n"
        "3. \"⚠️ 考试 / 作业\" — only what the teacher actually said about exams, assignments, deadlines "
        "(omit if nothing).\n"
        "4. \"复习要点\" — 3 to 5 things most worth reviewing.\n"
        "Correct obvious recognition errors from context. No introduction or closing remarks.");
}

QString events()
{
    return QStringLiteral(
        "Recent transcript (oldest first):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Sentences that may announce a date:\n"
        "<sentences>\n"
        "{sentences}\n"
        "</sentences>\n"
        "\n"
        "Today is {today}. List only what the teacher is actually announcing with a date you can "
        "determine:\n"
        "exams, quizzes, assignment or report deadlines, presentations, cancelled or extra classes.\n"
        "Resolve relative dates (\"next Tuesday\", \"in two weeks\") from today. Ignore dates in the "
        "lecture content itself\n"
        "(history, examples). Title: very short, in {answer_language} (e.g. \"期中考试\", \"第三章作业截止\").\n"
        "Reply with a JSON array only, [] if none:\n"
        "[{\"title\": \"...\", \"date\": \"YYYY-MM-DD\", \"time\": \"HH:mm or empty\", \"note\": "
        "\"scope / where / what to bring, or empty\"}]");
}

QString correctSystem()
{
    return QStringLiteral(
        "You correct speech-recognition errors in lecture transcripts and translate them precisely. "
        "You reply with JSON only.");
}

QString correct()
{
    return QStringLiteral(
        "Live transcript of a university lecture in {lecture_language} (it may contain some "
        "English).\n"
        "Speech recognition often writes a similar-sounding wrong word: a common word instead of a "
        "subject term,\n"
        "a name instead of a word, or a number heard as a word (e.g. 백만 원 → 배만 원).\n"
        "\n"
        "Earlier sentences (already corrected, oldest first):\n"
        "<context>\n"
        "{context}\n"
        "</context>\n"
        "\n"
        "New sentences, as a JSON array:\n"
        "{lines}\n"
        "\n"
        "For each sentence:\n"
        "1. \"text\": fix only words that were clearly misheard, using the context and the subject. "
        "Do not rephrase,\n"
        "   shorten, complete or add anything; if it is fine, keep it exactly as it is.\n"
        "2. \"translation\": translate the fixed sentence into {answer_language}. It must read like "
        "something written\n"
        "   in {answer_language} from the start: rebuild the word order the way a native speaker "
        "would say it (do not\n"
        "   follow the source language's word order), use that language's punctuation, and split or "
        "join clauses so it\n"
        "   reads smoothly. Translate the meaning, not the words: idioms and set phrases become the "
        "expression a native\n"
        "   speaker would actually use (e.g. \"adds a little intrigue\" → \"多了一点悬念\", not "
        "\"增添了一点阴谋\").\n"
        "   Keep the meaning exact and translate subject terms correctly; drop filler words (어, 음, "
        "그, 자, um, uh). An unfinished sentence stays unfinished; add nothing that was not said.\n"
        "Reply with only a JSON array of the same length, in order: [{\"text\": \"...\", "
        "\"translation\": \"...\"}, ...]");
}

QString chat()
{
    return QStringLiteral(
        "The student is chatting with you from the floating panel during or after class.\n"
        "Answer what they ask, briefly. Use the lecture transcript below when the question is about "
        "the class;\n"
        "otherwise answer normally.\n"
        "\n"
        "Recent lecture transcript (oldest first, may be empty):\n"
        "<transcript>\n"
        "{context}\n"
        "</transcript>\n"
        "\n"
        "Student's message:\n"
        "{message}");
}

} // namespace Prompts
