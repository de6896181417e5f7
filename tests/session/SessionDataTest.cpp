#include "session/SessionData.h"

#include "session/SessionText.h"

#include "SessionFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <limits>

using namespace Qt::StringLiterals;

namespace {

QDateTime utc(int month, int day, int hour, int minute, int second = 0)
{
    return QDateTime(QDate(2026, month, day), QTime(hour, minute, second), QTimeZone::utc());
}

SessionData fullRecord()
{
    return {.title = u"Thermodynamics 2"_s, .category = u"物理"_s, .started = utc(11, 18, 12, 21, 19),
            .duration = 4521.75, .lecture = u"Korean"_s, .answer = u"Simplified Chinese"_s,
            .lines = {{2.5, u"엔트로피는 증가합니다"_s, u"熵会增加"_s}, {7.125, u"quote \" and \\ slash"_s, {}}},
            .notes = {{61.0, u"考试重点"_s, u"Chapter 4 is on the exam"_s}},
            .audioRemoved = false, .deletedAt = utc(11, 20, 8, 0), .refined = true,
            .summary = u"Heat flows from hot to cold."_s,
            .vocabulary = QList<SessionData::Term>{{u"엔트로피"_s, u"熵"_s, {}}}};
}

// The full record's JSON with one member replaced, or taken out when the value is undefined.
QByteArray withMember(QStringView key, const QJsonValue &value)
{
    QJsonObject object = QJsonDocument::fromJson(fullRecord().toJson()).object();
    if (value.isUndefined())
        object.remove(key);
    else
        object.insert(key, value);
    return QJsonDocument(object).toJson();
}

} // namespace

TEST(SessionData, RoundTripsPrettyPrintedAndWithoutTheOptionalKeysItLacks)
{
    const QByteArray json = fullRecord().toJson();
    EXPECT_EQ(SessionData::fromJson(json), fullRecord());
    for (const char *stored :
         {"\n    \"title\": \"Thermodynamics 2\"", "\"started\": \"2026-11-18T12:21:19Z\"", "\"엔트로피는"})
        EXPECT_TRUE(json.contains(stored)) << stored;

    // Records from before a key existed load, and are saved again without it.
    const QJsonObject full = QJsonDocument::fromJson(json).object();
    for (const QStringView key :
         {u"category", u"audioRemoved", u"deletedAt", u"refined", u"summary", u"vocabulary"}) {
        for (const QJsonValue &absent : {QJsonValue(QJsonValue::Undefined), QJsonValue(QJsonValue::Null)}) {
            const auto data = SessionData::fromJson(withMember(key, absent));
            ASSERT_TRUE(data) << key;
            QJsonObject saved = QJsonDocument::fromJson(data->toJson()).object();
            EXPECT_FALSE(saved.contains(key)) << key;
            saved.insert(key, full[key]);
            EXPECT_EQ(saved, full);
        }
    }
}

TEST(SessionData, StrictAboutRequiredKeysTypesAndDates)
{
    for (const QStringView key :
         {u"title", u"started", u"duration", u"lecture", u"answer", u"lines", u"notes"})
        EXPECT_FALSE(SessionData::fromJson(withMember(key, QJsonValue::Undefined))) << key;
    // Dates without their zone or time, wrong types, and one bad element failing the whole record.
    const auto array = [](const char *json) { return QJsonDocument::fromJson(json).array(); };
    const std::pair<QStringView, QJsonValue> wrong[] = {
        {u"started", u"2026-11-18T12:21:19"_s}, {u"deletedAt", u"2026-11-20"_s},
        {u"duration", u"60"_s}, {u"title", 3}, {u"refined", u"yes"_s}, {u"summary", 1},
        {u"vocabulary", QJsonObject()}, {u"lines", QJsonArray{1}},
        {u"lines", array(R"([{"t": 1, "text": "a", "translation": ""}, {"t": 2, "text": "b"}])")},
        {u"notes", array(R"([{"t": "1", "kind": "k", "text": "a"}])")},
        {u"vocabulary", array(R"([{"term": "a", "meaning": "b"}])")}};
    for (const auto &[key, value] : wrong)
        EXPECT_FALSE(SessionData::fromJson(withMember(key, value))) << key;

    // Not a record at all, or cut off half-way.
    const QByteArray whole = fullRecord().toJson();
    for (const QByteArray &json : {QByteArray(), QByteArray("[]"), whole.left(whole.size() / 2)})
        EXPECT_FALSE(SessionData::fromJson(json)) << json.toStdString();
}

TEST(SessionText, EveryTextOfAClass)
{
    // Beyond a day, and what hand-edited records may hold; the Markdown files show the usual times.
    for (const auto &[seconds, shown] : {std::pair{59.9, u"00:59"}, {108'059, u"30:00:59"}, {-4, u"00:00"},
                                         {std::numeric_limits<double>::quiet_NaN(), u"00:00"}})
        EXPECT_EQ(SessionText::clock(seconds), QStringView(shown)) << seconds;
    EXPECT_FALSE(SessionText::clock(std::numeric_limits<double>::infinity()).isEmpty());
    const QDateTime start(QDate(2026, 11, 17), QTime(23, 5, 59), QTimeZone::utc());
    EXPECT_EQ(SessionText::folderName(start), u"2026-11-18 08-05"_s);
    EXPECT_EQ(SessionText::defaultTitle(start), u"Nov 18, 8:05\u202fAM 的记录"_s);

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
