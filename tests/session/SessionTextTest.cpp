#include "session/SessionText.h"

#include "SessionFixture.h"

#include <QTimeZone>

#include <limits>

using namespace Qt::StringLiterals;
using SessionTextTest = SessionFixture;

TEST_F(SessionTextTest, ClockSwitchesToHoursAtOneHour)
{
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    // The last two from hand-edited records.
    for (const auto &[seconds, shown] : {std::pair{0.0, u"00:00"}, {59.9, u"00:59"}, {61, u"01:01"},
                                         {3599.5, u"59:59"}, {3600, u"1:00:00"}, {3725, u"1:02:05"},
                                         {108'059, u"30:00:59"}, {-4, u"00:00"}, {nan, u"00:00"}})
        EXPECT_EQ(SessionText::clock(seconds), QStringView(shown)) << seconds;
    EXPECT_FALSE(SessionText::clock(std::numeric_limits<double>::infinity()).isEmpty());
}

TEST_F(SessionTextTest, FolderNameAndTitleAreTheLocalStartMinute)
{
    const QDateTime start(QDate(2026, 11, 17), QTime(23, 5, 59), QTimeZone::utc());
    EXPECT_EQ(SessionText::folderName(start), u"2026-11-18 08-05"_s);
    EXPECT_EQ(SessionText::defaultTitle(start), u"Nov 18, 8:05\u202fAM 的记录"_s);
}

TEST_F(SessionTextTest, MarkdownFiles)
{
    SessionData data;
    data.title = u"Linear Algebra"_s;
    data.started = QDateTime(QDate(2026, 11, 18), QTime(0, 5, 30), QTimeZone::utc());   // 09:05 here
    data.duration = 3599.5;
    data.lines = {{0, u"Welcome back."_s, {}}, {62.7, u"An eigenvector keeps its direction."_s, u"特征向量保持方向。"_s}};
    EXPECT_EQ(SessionText::transcriptMarkdown(data), u"# Linear Algebra\n\n"
                                                     u"November 18, 2026 at 9:05\u202fAM · 时长 59:59\n\n"
                                                     u"**[00:00]** Welcome back.\n\n"
                                                     u"**[01:02]** An eigenvector keeps its direction.\n\n"
                                                     u"> 特征向量保持方向。\n\n"_s);
    data.category = u"数学"_s;
    data.duration = 3600;
    data.lines.clear();
    EXPECT_EQ(SessionText::transcriptMarkdown(data),
              u"# Linear Algebra\n\n分类：数学 · November 18, 2026 at 9:05\u202fAM · 时长 1:00:00\n\n"_s);

    data.vocabulary = QList<SessionData::Term>{{u"eigenvalue"_s, u"特征值"_s, {}},
                                               {u"kernel"_s, u"核"_s, u"also: null space"_s}};
    EXPECT_EQ(SessionText::vocabularyMarkdown(data), u"# Linear Algebra · 单词表\n\n- **eigenvalue**\u3000特征值\n"
                                                     u"- **kernel**\u3000核\n  also: null space\n"_s);

    // Notes with a summary only, with both, with notes only.
    const QString heading = u"# Linear Algebra · AI 笔记\n\n"_s;
    const QString summary = u"## 课堂总结\n\nEigenvectors and the kernel.\n\n"_s;
    const QString notes = u"### [1:02:05] 考试重点\n\nProofs of chapter 5 are examinable.\n\n"
                          u"### [00:10] any kind\n\nkept as it is\n\n"_s;
    data.summary = u"Eigenvectors and the kernel."_s;
    EXPECT_EQ(SessionText::notesMarkdown(data), heading + summary);
    data.notes = {{3725, u"考试重点"_s, u"Proofs of chapter 5 are examinable."_s},
                  {10, u"any kind"_s, u"kept as it is"_s}};
    EXPECT_EQ(SessionText::notesMarkdown(data), heading + summary + notes);
    data.summary.reset();
    EXPECT_EQ(SessionText::notesMarkdown(data), heading + notes);
}
