#include "engine/LineDetectors.h"

#include "captions/Sentences.h"
#include "engine/Alternatives.h"
#include "text/Characters.h"

#include <algorithm>
#include <string>

namespace LineDetectors {

namespace {

// A question with fewer characters than these is too short to be worth an answer; drafts are
// still moving, so they must be longer.
constexpr qsizetype questionMinimum = 5;
constexpr qsizetype draftQuestionMinimum = 7;
constexpr int digitRunKept = 3;

// The notice pattern's "\d+ ?月" retries a long digit run from each of its digits, which takes
// seconds on a line of thousands of digits. No alternative of that pattern tells a run of three
// digits from a longer one, so longer runs are cut to three before it is tried.
QString shortDigitRuns(const QString &text)
{
    std::u32string kept;
    int run = 0;
    for (const char32_t point : text.toUcs4()) {
        run = Text::isIn(Text::CharClass::DecimalDigits, point) ? run + 1 : 0;
        if (run <= digitRunKept)
            kept.push_back(point);
    }
    return QString::fromUcs4(kept.data(), qsizetype(kept.size()));
}

// The patterns exactly as the regular expression engine receives them.
constexpr char16_t garbageText[] = u"[#*※‡|>☆¥]|\\d{2}:\\d{2}";
constexpr char16_t rhetoricalText[] =
    u"(죠|지요|잖아요|그쵸|그치|알겠어요|아시겠어요|이해했어요|됐어요|돼요|맞아요|그래요"
    u"|기억나세요|볼까 ?요|할까요|갈까요|넘어갈까요|시작할까요|right|okay|ok)\\s*\\?$";
constexpr char16_t questionLikeText[] =
    u"(까요|나요|니까|ㄹ까|을까|를까|는가|은가|인가|는지|은지|가요|어요\\?|에요\\?|해요\\?)"
    u"[.\\s]*$"
    u"|(^|\\s)(뭐|뭘|뭔|무엇|무슨|왜|어떻게|어떤|누가|누구|언제|어디|몇|얼마|어느)"
    u"|(아는 사람|알아요|답해|대답|말해 볼|말해볼|해 볼 사람|해볼 사람|발표해|설명해 볼|생각해요)"
    u"|^(what|why|how|who|whom|which|when|where|do|does|did|is|are|was|were|can|could"
    u"|would|should|will|have|has|any ?one|anybody)\\b"
    u"|(吗|呢|什么|为什么|怎么|哪|谁|几|多少)[。.\\s]*$"
    u"|(ですか|ますか|でしょうか|かな|の)[。.\\s]*$";
constexpr char16_t noticeKeywordsText[] =
    u"(midterm|final exam|exam|quiz|homework|assignment|due date|deadline|submit"
    u"|presentation|project|paper is due"
    u"|(jan|feb|mar|apr|may|jun|jul|aug|sep|sept|oct|nov|dec)[a-z]*\\.? ?\\d{1,2}"
    u"(st|nd|rd|th)?\\b"
    u"|\\b(next|this) (monday|tuesday|wednesday|thursday|friday|week)"
    u"|試験|課題|レポート|締め切り|\\d+ ?月 ?\\d+ ?日"
    u"|考试|考試|作业|截止|测验|小测|期中|期末|下周"
    u"|examen|devoir|prüfung|hausaufgabe|abgabe"
    u"|중간 ?고사|기말 ?고사|중앙 ?고사|중간 ?시험|기말 ?시험|\\d+ ?월 ?\\d+ ?일"
    u"|시험 ?범위|시험 ?문제|시험에 나|시험 ?날|시험 ?보|퀴즈|과제|숙제|레포트|리포트|보고서"
    u"|에세이|제출|마감|출석|휴강|보강|팀플|조별|학점|성적|출제|꼭 기억|외워|다음 ?주|공지"
    u"|이클래스|e-?class|LMS)";
constexpr char16_t classEndText[] =
    u"(오늘은? ?여기까지|오늘 수업은? ?여기|수업 ?끝|수고하셨습니다|수고했어요"
    u"|다음 ?시간에 ?(봐요|뵙|만나)|다음 ?주에 ?(봐요|뵙|만나)"
    u"|that'?s (all|it) for today|see you (next|on|tomorrow)|class (is )?(over|dismissed)"
    u"|we'?ll stop here|let'?s stop here"
    u"|今天(就)?(到这|讲到这|上到这)|下课|下次(课)?见|今日はここまで|お疲れ様でした)";

constexpr auto sensitive = Text::Regex::Case::Sensitive;
constexpr auto insensitive = Text::Regex::Case::Insensitive;

// Compiled on first use, once for the whole process.
template<const char16_t *text, Text::Regex::Case caseMode>
const Text::Regex &compiled()
{
    static const Text::Regex pattern(QString::fromUtf16(text), caseMode);
    return pattern;
}

// The long alternations, tried one alternative at a time: same answers, a fraction of the time.
template<const char16_t *text>
const Alternatives &alternatives()
{
    static const Alternatives parts(QString::fromUtf16(text), insensitive);
    return parts;
}

} // namespace

const Text::Regex &sentences()
{
    static const Text::Regex pattern(u"[^" + Sentences::closingMarks + u"]+[" + Sentences::closingMarks + u']');
    return pattern;
}

const Text::Regex &garbage()
{
    return compiled<garbageText, sensitive>();
}

const Text::Regex &rhetorical()
{
    return compiled<rhetoricalText, insensitive>();
}

const Text::Regex &questionLike()
{
    return compiled<questionLikeText, insensitive>();
}

const Text::Regex &noticeKeywords()
{
    return compiled<noticeKeywordsText, insensitive>();
}

const Text::Regex &classEnd()
{
    return compiled<classEndText, insensitive>();
}

QStringList sentencesIn(const QString &text)
{
    // Every sentence ends in a closing mark, so the text after the last one can hold none; cut
    // off, it can't make the pattern retry a long unfinished tail from each of its positions.
    qsizetype end = text.size();
    while (end > 0 && !Sentences::closingMarks.contains(text[end - 1]))
        --end;
    QStringList found;
    for (const Text::Regex::Match &match : sentences().all(text.left(end)))
        found << match.text;
    return found;
}

qsizetype nonBlankCount(const QString &text)
{
    std::u32string kept;
    for (const char32_t point : text.toUcs4()) {
        if (!Text::isIn(Text::CharClass::WhitespacesAndNewlines, point))
            kept.push_back(point);
    }
    return Text::characterCount(QString::fromUcs4(kept.data(), qsizetype(kept.size())));
}

bool hasLetter(const QString &text)
{
    const auto points = text.toUcs4();
    return std::any_of(points.cbegin(), points.cend(),
                       [](char32_t point) { return Text::isIn(Text::CharClass::Letters, point); });
}

bool isQuestion(const QString &sentence)
{
    return nonBlankCount(sentence) > questionMinimum
           && (sentence.endsWith(u'?') || alternatives<questionLikeText>().matches(sentence))
           && !rhetorical().matches(sentence);
}

bool isNotice(const QString &sentence)
{
    return alternatives<noticeKeywordsText>().matches(shortDigitRuns(sentence));
}

bool isDraftQuestion(const QString &sentence)
{
    return nonBlankCount(sentence) > draftQuestionMinimum
           && (sentence.endsWith(u'?') || sentence.endsWith(u'？')) && !rhetorical().matches(sentence);
}

bool isClassEnd(const QString &sentence)
{
    return alternatives<classEndText>().matches(sentence);
}

} // namespace LineDetectors
