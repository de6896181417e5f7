#include "session/SessionText.h"

#include <QTimeZone>

#include <limits>

#include <gtest/gtest.h>

namespace {

SessionData lecture()
{
    SessionData data;
    data.title = QStringLiteral("Linear Algebra");
    // 09:05 in the tests' zone (UTC+9).
    data.started = QDateTime(QDate(2026, 11, 18), QTime(0, 5, 30), QTimeZone::utc());
    data.duration = 3599.5;
    data.lecture = QStringLiteral("English");
    data.answer = QStringLiteral("Simplified Chinese");
    return data;
}

} // namespace

TEST(SessionText, ClockSwitchesToHoursAtOneHour)
{
    EXPECT_EQ(SessionText::clock(0), QStringLiteral("00:00"));
    EXPECT_EQ(SessionText::clock(59.9), QStringLiteral("00:59"));
    EXPECT_EQ(SessionText::clock(61), QStringLiteral("01:01"));
    EXPECT_EQ(SessionText::clock(3599.5), QStringLiteral("59:59"));
    EXPECT_EQ(SessionText::clock(3600), QStringLiteral("1:00:00"));
    EXPECT_EQ(SessionText::clock(3725), QStringLiteral("1:02:05"));
    EXPECT_EQ(SessionText::clock(36'000 * 3 + 59), QStringLiteral("30:00:59"));
    // Values a hand-edited record may hold.
    EXPECT_EQ(SessionText::clock(-4), QStringLiteral("00:00"));
    EXPECT_EQ(SessionText::clock(std::numeric_limits<double>::quiet_NaN()), QStringLiteral("00:00"));
    EXPECT_FALSE(SessionText::clock(std::numeric_limits<double>::infinity()).isEmpty());
}

TEST(SessionText, FolderNameIsLocalStartMinute)
{
    const QDateTime start(QDate(2026, 11, 17), QTime(23, 5, 59), QTimeZone::utc());
    EXPECT_EQ(SessionText::folderName(start), QStringLiteral("2026-11-18 08-05"));
    EXPECT_EQ(SessionText::defaultTitle(start), QStringLiteral("Nov 18, 8:05\u202fAM 的记录"));
}

TEST(SessionText, TranscriptWithAndWithoutCategoryAndTranslations)
{
    SessionData data = lecture();
    data.lines = {{0, QStringLiteral("Welcome back."), QString()},
                  {62.7, QStringLiteral("An eigenvector keeps its direction."), QStringLiteral("特征向量保持方向。")}};
    EXPECT_EQ(SessionText::transcriptMarkdown(data),
              QStringLiteral("# Linear Algebra\n\n"
                             "November 18, 2026 at 9:05\u202fAM · 时长 59:59\n\n"
                             "**[00:00]** Welcome back.\n\n"
                             "**[01:02]** An eigenvector keeps its direction.\n\n"
                             "> 特征向量保持方向。\n\n"));

    data.category = QStringLiteral("数学");
    data.duration = 3600;
    data.lines.clear();
    EXPECT_EQ(SessionText::transcriptMarkdown(data),
              QStringLiteral("# Linear Algebra\n\n"
                             "分类：数学 · November 18, 2026 at 9:05\u202fAM · 时长 1:00:00\n\n"));
}

TEST(SessionText, VocabularyPutsNotesOnTheirOwnLine)
{
    SessionData data = lecture();
    data.vocabulary = QList<SessionData::Term>{
        {QStringLiteral("eigenvalue"), QStringLiteral("特征值"), QString()},
        {QStringLiteral("kernel"), QStringLiteral("核"), QStringLiteral("also: null space")}};
    EXPECT_EQ(SessionText::vocabularyMarkdown(data),
              QStringLiteral("# Linear Algebra · 单词表\n\n"
                             "- **eigenvalue**\u3000特征值\n"
                             "- **kernel**\u3000核\n  also: null space\n"));
}

TEST(SessionText, NotesWithSummaryOnlyNotesOnlyAndBoth)
{
    SessionData data = lecture();
    data.summary = QStringLiteral("Eigenvectors and the kernel.");
    const QString heading = QStringLiteral("# Linear Algebra · AI 笔记\n\n");
    EXPECT_EQ(SessionText::notesMarkdown(data),
              heading + QStringLiteral("## 课堂总结\n\nEigenvectors and the kernel.\n\n"));

    data.notes = {{3725, QStringLiteral("考试重点"), QStringLiteral("Proofs of chapter 5 are examinable.")},
                  {10, QStringLiteral("any kind"), QStringLiteral("kept as it is")}};
    const QString notes = QStringLiteral("### [1:02:05] 考试重点\n\nProofs of chapter 5 are examinable.\n\n"
                                         "### [00:10] any kind\n\nkept as it is\n\n");
    EXPECT_EQ(SessionText::notesMarkdown(data),
              heading + QStringLiteral("## 课堂总结\n\nEigenvectors and the kernel.\n\n") + notes);
    data.summary.reset();
    EXPECT_EQ(SessionText::notesMarkdown(data), heading + notes);
}

TEST(SessionText, WordBookSectionKeepsNotesOnTheEntryLine)
{
    const QList<SessionData::Term> terms = {{QStringLiteral("rank"), QStringLiteral("秩"), QString()},
                                            {QStringLiteral("span"), QStringLiteral("张成"), QStringLiteral("of vectors")}};
    EXPECT_EQ(SessionText::wordBookSection(terms, QStringLiteral("Week 3"), std::nullopt),
              QStringLiteral("\n## 未分类 · Week 3\n\n"
                             "- **rank**\u3000秩\n"
                             "- **span**\u3000张成\u3000— of vectors\n"));
    EXPECT_EQ(SessionText::wordBookSection(terms.mid(0, 1), QStringLiteral("Week 3"), QStringLiteral("数学")),
              QStringLiteral("\n## 数学 · Week 3\n\n- **rank**\u3000秩\n"));
}
