#include "engine/Prompts.h"

#include <QLocale>

namespace Prompts {

namespace {

// How every template sets off what it quotes: "<tag>\n{placeholder}\n</tag>".
QString quoted(QStringView tag, QStringView placeholder)
{
    return u'<' + tag + u">\n{" + placeholder + u"}\n</" + tag + u'>';
}

// The opening of the card and event prompts.
QString recentTranscript()
{
    return u"Recent transcript (oldest first):\n" + quoted(u"transcript", u"context") + u"\n\n";
}

QString sentences()
{
    return quoted(u"sentences", u"sentences") + u"\n\n";
}

QString alreadyShown()
{
    return u"Already shown to the student (do not repeat these):\n" + quoted(u"already_shown", u"recent")
           + u"\n\n";
}

} // namespace

QString fill(const QString &text, const Variables &variables)
{
    // One pass over the template: a value is copied as it stands, so a lecture that says
    // "{sentences}" can't change the instructions around it.
    QString filled;
    filled.reserve(text.size());
    qsizetype from = 0;
    while (from < text.size()) {
        const qsizetype open = text.indexOf(u'{', from);
        const qsizetype close = open < 0 ? -1 : text.indexOf(u'}', open + 1);
        if (close < 0)
            break;
        const auto value = variables.constFind(text.sliced(open + 1, close - open - 1));
        if (value == variables.cend()) {
            filled += QStringView(text).sliced(from, open + 1 - from);
            from = open + 1;
            continue;
        }
        filled += QStringView(text).sliced(from, open - from);
        filled += *value;
        from = close + 1;
    }
    filled += QStringView(text).sliced(from);
    return filled;
}

QString dateText(const QDate &day)
{
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(day, u"dddd, MM/dd/yyyy");
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
    return recentTranscript()
           + u"Sentences that may be questions (question words or endings, or a question mark), detected "
             u"over the last\n"
             u"few seconds; some may still be unfinished. Live captions often contain several drafts of "
             u"the same sentence;\n"
             u"treat near-duplicates as one:\n"
           + sentences() + alreadyShown()
           + u"Decide whether the teacher is asking the students something they could answer — including\n"
             u"\"do you know ...?\" questions addressed to the class. Skip only clear non-questions: tag "
             u"questions\n"
             u"like \"right?\", the teacher talking to themself, or transitions like \"shall we look at "
             u"the next one?\".\n"
             u"When in doubt, answer: a needless answer costs the student a glance, a missed question "
             u"costs more.\n"
             u"\n"
             u"Answer only the most recent real question that has not already been shown.\n"
             u"If there is none, reply with exactly: SKIP\n"
             u"\n"
             u"Otherwise reply in exactly two lines (the student already sees the question in the live "
             u"translation):\n"
             u"<suggested answer in {lecture_language}>\n"
             u"意思：<meaning in {answer_language}>";
}

QString notice()
{
    return recentTranscript()
           + u"Sentences that matched an exam/homework/schedule keyword over the last few seconds\n"
             u"(live captions often contain several drafts of the same sentence):\n"
           + sentences() + alreadyShown()
           + u"Decide whether the teacher is actually announcing something about exams, assignments, "
             u"deadlines,\n"
             u"attendance, class schedule, or hinting what will be on a test. Words like 시험 can also "
             u"mean \"experiment\",\n"
             u"and 발표 can mean \"published\", so read the context.\n"
             u"\n"
             u"If it is NOT such an announcement, or everything in it was already shown, reply with "
             u"exactly: SKIP\n"
             u"\n"
             u"Otherwise reply in {answer_language} in one to three short lines listing only the facts "
             u"stated\n"
             u"(what, when, format, how to submit). Note anything that is unclear instead of guessing.";
}

QString liveSummary()
{
    return u"You keep a running summary of a university lecture while it is happening.\n"
           u"\n"
           u"Summary so far:\n"
           + quoted(u"summary", u"summary")
           + u"\n\n"
             u"What the teacher said since then (live transcript, oldest first; may contain recognition "
             u"errors):\n"
           + quoted(u"transcript", u"context")
           + u"\n\n"
             u"Write the updated summary of the whole class so far, in {answer_language}: the earlier "
             u"points (kept, merged\n"
             u"where they continue) plus what is new. Group by topic with a short heading line for each "
             u"topic, then \"- \" bullets:\n"
             u"definitions, claims, causes and effects, examples, formulas. Keep subject terms in the "
             u"original language in\n"
             u"parentheses where useful. Mark anything about exams, assignments or deadlines with ⚠️. At "
             u"most about 20 bullets;\n"
             u"no introduction or closing remarks. If nothing worth noting has been said yet, reply with "
             u"exactly: SKIP";
}

QString vocabulary()
{
    return u"Live transcript of a university lecture in {lecture_language} (oldest first; may contain "
           u"recognition errors):\n"
           + quoted(u"transcript", u"context")
           + u"\n\n"
             u"Terms already in the student's word list (do not repeat):\n"
             u"{known}\n"
             u"\n"
             u"Pick out only the difficult, subject-specific terms from this part: technical vocabulary "
             u"of the field,\n"
             u"named concepts, theories, laws, formulas, jargon a non-specialist would not know. Leave out "
             u"everyday words,\n"
             u"common verbs and adjectives, function words, numbers, names of people or places (unless "
             u"they name a concept),\n"
             u"and anything the student would already know from general language. Usually 0 to 4 terms; "
             u"quality over quantity.\n"
             u"Fix obvious recognition errors in the term itself.\n"
             u"\n"
             u"Reply with only a JSON array: [{\"term\": \"<as used in class, original language>\", "
             u"\"meaning\": \"<{answer_language}\n"
             u"translation>\", \"note\": \"<one short {answer_language} line: what it means in this "
             u"subject>\"}]. If there are none, reply [].";
}

QString finalSummary()
{
    return u"The lecture has ended. Full transcript (live speech recognition, oldest first; may contain "
           u"recognition errors):\n"
           + quoted(u"transcript", u"context")
           + u"\n\n"
             u"Running summary made during class:\n"
           + quoted(u"summary", u"summary")
           + u"\n\n"
             u"Write the final class notes in {answer_language} for a student reviewing later:\n"
             u"1. One line: what this class was about.\n"
             u"2. The content, grouped by topic in the order taught, each with a short heading and \"- \" "
             u"bullets\n"
             u"   (definitions, reasoning, examples, formulas; subject terms in the original language in "
             u"parentheses).\n"
             u"3. \"⚠️ 考试 / 作业\" — only what the teacher actually said about exams, assignments, "
             u"deadlines (omit if nothing).\n"
             u"4. \"复习要点\" — 3 to 5 things most worth reviewing.\n"
             u"Correct obvious recognition errors from context. No introduction or closing remarks.";
}

QString events()
{
    return recentTranscript()
           + u"Sentences that may announce a date:\n"
           + sentences()
           + u"Today is {today}. List only what the teacher is actually announcing with a date you can "
             u"determine:\n"
             u"exams, quizzes, assignment or report deadlines, presentations, cancelled or extra "
             u"classes.\n"
             u"Resolve relative dates (\"next Tuesday\", \"in two weeks\") from today. Ignore dates in the "
             u"lecture content itself\n"
             u"(history, examples). Title: very short, in {answer_language} (e.g. \"期中考试\", "
             u"\"第三章作业截止\").\n"
             u"Reply with a JSON array only, [] if none:\n"
             u"[{\"title\": \"...\", \"date\": \"YYYY-MM-DD\", \"time\": \"HH:mm or empty\", \"note\": "
             u"\"scope / where / what to bring, or empty\"}]";
}

QString correctSystem()
{
    return QStringLiteral(
        "You correct speech-recognition errors in lecture transcripts and translate them precisely. "
        "You reply with JSON only.");
}

QString correct()
{
    return u"Live transcript of a university lecture in {lecture_language} (it may contain some "
           u"English).\n"
           u"Speech recognition often writes a similar-sounding wrong word: a common word instead of a "
           u"subject term,\n"
           u"a name instead of a word, or a number heard as a word (e.g. 백만 원 → 배만 원).\n"
           u"\n"
           u"Earlier sentences (already corrected, oldest first):\n"
           + quoted(u"context", u"context")
           + u"\n\n"
             u"New sentences, as a JSON array:\n"
             u"{lines}\n"
             u"\n"
             u"For each sentence:\n"
             u"1. \"text\": fix only words that were clearly misheard, using the context and the subject. "
             u"Do not rephrase,\n"
             u"   shorten, complete or add anything; if it is fine, keep it exactly as it is.\n"
             u"2. \"translation\": translate the fixed sentence into {answer_language}. It must read like "
             u"something written\n"
             u"   in {answer_language} from the start: rebuild the word order the way a native speaker "
             u"would say it (do not\n"
             u"   follow the source language's word order), use that language's punctuation, and split or "
             u"join clauses so it\n"
             u"   reads smoothly. Translate the meaning, not the words: idioms and set phrases become the "
             u"expression a native\n"
             u"   speaker would actually use (e.g. \"adds a little intrigue\" → \"多了一点悬念\", not "
             u"\"增添了一点阴谋\").\n"
             u"   Keep the meaning exact and translate subject terms correctly; drop filler words (어, 음, "
             u"그, 자, um, uh). An unfinished sentence stays unfinished; add nothing that was not said.\n"
             u"Reply with only a JSON array of the same length, in order: [{\"text\": \"...\", "
             u"\"translation\": \"...\"}, ...]";
}

QString chat()
{
    return u"The student is chatting with you from the floating panel during or after class.\n"
           u"Answer what they ask, briefly. Use the lecture transcript below when the question is about "
           u"the class;\n"
           u"otherwise answer normally.\n"
           u"\n"
           u"Recent lecture transcript (oldest first, may be empty):\n"
           + quoted(u"transcript", u"context")
           + u"\n\n"
             u"Student's message:\n"
             u"{message}";
}

} // namespace Prompts
