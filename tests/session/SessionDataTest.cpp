#include "session/SessionData.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTimeZone>

#include <gtest/gtest.h>

namespace {

QDateTime utc(int year, int month, int day, int hour, int minute, int second = 0)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), QTimeZone::utc());
}

SessionData fullRecord()
{
    SessionData data;
    data.title = QStringLiteral("Thermodynamics 2");
    data.category = QStringLiteral("物理");
    data.started = utc(2026, 11, 18, 12, 21, 19);
    data.duration = 4521.75;
    data.lecture = QStringLiteral("Korean");
    data.answer = QStringLiteral("Simplified Chinese");
    data.lines = {{2.5, QStringLiteral("엔트로피는 증가합니다"), QStringLiteral("熵会增加")},
                  {7.125, QStringLiteral("quote \" and \\ slash"), QString()}};
    data.notes = {{61.0, QStringLiteral("考试重点"), QStringLiteral("Chapter 4 is on the exam")}};
    data.audioRemoved = false;
    data.deletedAt = utc(2026, 11, 20, 8, 0);
    data.refined = true;
    data.summary = QStringLiteral("Heat flows from hot to cold.");
    data.vocabulary = QList<SessionData::Term>{{QStringLiteral("엔트로피"), QStringLiteral("熵"), QString()}};
    return data;
}

QJsonObject objectOf(const QByteArray &json)
{
    return QJsonDocument::fromJson(json).object();
}

QByteArray withMember(const QString &key, const QJsonValue &value)
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
    const SessionData data = fullRecord();
    const QByteArray json = data.toJson();
    EXPECT_EQ(SessionData::fromJson(json), data);
    EXPECT_TRUE(json.contains("\n    \"title\": \"Thermodynamics 2\""));   // pretty printed
    EXPECT_TRUE(json.contains("\"started\": \"2026-11-18T12:21:19Z\""));
    EXPECT_TRUE(json.contains("\"deletedAt\": \"2026-11-20T08:00:00Z\""));
    EXPECT_TRUE(json.contains("\"duration\": 4521.75"));
    EXPECT_TRUE(json.contains("\"t\": 7.125"));
    EXPECT_TRUE(json.contains("엔트로피는"));   // UTF-8, not escaped
}

TEST(SessionData, FreshRecordLeavesOptionalKeysOut)
{
    const QDateTime start = utc(2026, 3, 2, 0, 5, 0).addMSecs(420);
    const SessionData data = SessionData::make(QStringLiteral("English"), QStringLiteral("Japanese"), start);
    EXPECT_EQ(data.title, QStringLiteral("Mar 2, 9:05\u202fAM 的记录"));
    EXPECT_EQ(data.started, start);
    EXPECT_EQ(data.duration, 0);
    EXPECT_TRUE(data.lines.isEmpty() && data.notes.isEmpty());
    EXPECT_EQ(data.lecture, QStringLiteral("English"));
    EXPECT_EQ(data.answer, QStringLiteral("Japanese"));

    const QJsonObject object = objectOf(data.toJson());
    EXPECT_EQ(object.keys(), QStringList({QStringLiteral("answer"), QStringLiteral("duration"),
                                          QStringLiteral("lecture"), QStringLiteral("lines"),
                                          QStringLiteral("notes"), QStringLiteral("started"),
                                          QStringLiteral("title")}));
    EXPECT_EQ(object.value(u"started").toString(), QStringLiteral("2026-03-02T00:05:00Z"));
    const auto decoded = SessionData::fromJson(data.toJson());
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->started, start.addMSecs(-420));   // whole seconds on disk
}

TEST(SessionData, OldRecordWithoutNewerKeysDecodesAndStaysWithoutThem)
{
    const QByteArray old = R"JSON({
        "title": "Old class", "started": "2025-09-01T07:00:00Z", "duration": 60,
        "lecture": "English", "answer": "Simplified Chinese",
        "lines": [{"t": 0, "text": "Hello", "translation": ""}],
        "notes": [], "category": null
    })JSON";
    const auto data = SessionData::fromJson(old);
    ASSERT_TRUE(data);
    EXPECT_FALSE(data->vocabulary || data->summary || data->refined || data->category || data->deletedAt
                 || data->audioRemoved);
    const QJsonObject saved = objectOf(data->toJson());
    for (const char16_t *key : {u"vocabulary", u"summary", u"refined", u"category", u"deletedAt", u"audioRemoved"})
        EXPECT_FALSE(saved.contains(QStringView(key))) << QStringView(key).toString().toStdString();
}

TEST(SessionData, StrictAboutRequiredKeysTypesAndDates)
{
    for (const char *key : {"title", "started", "duration", "lecture", "answer", "lines", "notes"})
        EXPECT_FALSE(SessionData::fromJson(withMember(QString::fromLatin1(key), QJsonValue::Undefined))) << key;

    const QStringList badDates = {QStringLiteral("2026-11-18T12:21:19.5Z"), QStringLiteral("2026-11-18T12:21:19"),
                                  QStringLiteral("2026-11-18"), QStringLiteral("18.11.2026 12:21"),
                                  QStringLiteral("2026-13-18T12:21:19Z"), QString()};
    for (const QString &date : badDates) {
        EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("started"), date))) << date.toStdString();
        EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("deletedAt"), date))) << date.toStdString();
    }
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("duration"), QStringLiteral("60"))));
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("title"), 3)));
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("refined"), QStringLiteral("yes"))));
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("summary"), 1)));
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("vocabulary"), QJsonObject())));

    // One bad element fails the whole record.
    const QJsonArray badLines = QJsonDocument::fromJson(R"([{"t": 1, "text": "a", "translation": ""},
                                                             {"t": 2, "text": "b"}])").array();
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("lines"), badLines)));
    const QJsonArray badNotes = QJsonDocument::fromJson(R"([{"t": "1", "kind": "k", "text": "a"}])").array();
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("notes"), badNotes)));
    const QJsonArray badTerms = QJsonDocument::fromJson(R"([{"term": "a", "meaning": "b"}])").array();
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("vocabulary"), badTerms)));
    EXPECT_FALSE(SessionData::fromJson(withMember(QStringLiteral("lines"), QJsonArray{1})));

    // Not a record at all, or cut off half-way.
    EXPECT_FALSE(SessionData::fromJson(""));
    EXPECT_FALSE(SessionData::fromJson("[]"));
    const QByteArray whole = fullRecord().toJson();
    EXPECT_FALSE(SessionData::fromJson(whole.left(whole.size() / 2)));

    // A date with an offset names the same moment.
    const auto offset = SessionData::fromJson(withMember(QStringLiteral("started"),
                                                         QStringLiteral("2026-11-18T21:21:19+09:00")));
    ASSERT_TRUE(offset);
    EXPECT_EQ(offset->started, fullRecord().started);
}
