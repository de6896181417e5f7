#include "session/SessionData.h"

#include "QtPrinters.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <gtest/gtest.h>

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

QJsonObject objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

QByteArray withMember(QStringView key, const QJsonValue &value)
{
    QJsonObject object = objectOf(fullRecord().toJson());
    if (value.isUndefined())
        object.remove(key);
    else
        object.insert(key, value);
    return QJsonDocument(object).toJson();
}

} // namespace

TEST(SessionData, RoundTripsEveryField)
{
    const QByteArray json = fullRecord().toJson();
    EXPECT_EQ(SessionData::fromJson(json), fullRecord());
    // Pretty printed, UTC to the second, UTF-8 unescaped.
    for (const char *stored : {"\n    \"title\": \"Thermodynamics 2\"", "\"started\": \"2026-11-18T12:21:19Z\"",
                               "\"deletedAt\": \"2026-11-20T08:00:00Z\"", "\"duration\": 4521.75", "\"t\": 7.125",
                               "\"엔트로피는"})
        EXPECT_TRUE(json.contains(stored)) << stored;
}

TEST(SessionData, OptionalKeysAbsentOrNullStayOut)
{
    const QDateTime start = utc(3, 2, 0, 5).addMSecs(420);
    const SessionData fresh = SessionData::make(u"English"_s, u"Japanese"_s, start);
    EXPECT_EQ(objectOf(fresh.toJson()).keys(), QStringList({u"answer"_s, u"duration"_s, u"lecture"_s, u"lines"_s,
                                                            u"notes"_s, u"started"_s, u"title"_s}));
    SessionData whole = fresh;
    whole.started = start.addMSecs(-420);   // whole seconds on disk
    EXPECT_EQ(SessionData::fromJson(fresh.toJson()), whole);

    // Records from before a key existed load, and are saved again without it.
    const QJsonObject full = objectOf(fullRecord().toJson());
    for (const QStringView key :
         {u"category", u"audioRemoved", u"deletedAt", u"refined", u"summary", u"vocabulary"}) {
        for (const QJsonValue &absent : {QJsonValue(QJsonValue::Undefined), QJsonValue(QJsonValue::Null)}) {
            const auto data = SessionData::fromJson(withMember(key, absent));
            ASSERT_TRUE(data) << key;
            QJsonObject saved = objectOf(data->toJson());
            EXPECT_FALSE(saved.contains(key)) << key;
            saved.insert(key, full[key]);
            EXPECT_EQ(saved, full);
        }
    }
}

TEST(SessionData, StrictAboutRequiredKeysTypesAndDates)
{
    for (const QStringView key : {u"title", u"started", u"duration", u"lecture", u"answer", u"lines", u"notes"})
        EXPECT_FALSE(SessionData::fromJson(withMember(key, QJsonValue::Undefined))) << key;
    for (const QString &date : {u"2026-11-18T12:21:19.5Z"_s, u"2026-11-18T12:21:19"_s, u"2026-11-18"_s,
                                u"18.11.2026 12:21"_s, u"2026-13-18T12:21:19Z"_s, QString()}) {
        EXPECT_FALSE(SessionData::fromJson(withMember(u"started", date))) << date;
        EXPECT_FALSE(SessionData::fromJson(withMember(u"deletedAt", date))) << date;
    }
    // Wrong types, and one bad element failing the whole record.
    const auto array = [](const char *json) { return QJsonDocument::fromJson(json).array(); };
    const std::pair<QStringView, QJsonValue> wrong[] = {
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
    // A date with an offset names the same moment.
    EXPECT_EQ(SessionData::fromJson(withMember(u"started", u"2026-11-18T21:21:19+09:00"_s)), fullRecord());
}
