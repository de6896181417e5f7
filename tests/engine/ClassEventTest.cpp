#include "QtPrinters.h"
#include "engine/ClassEvent.h"
#include "text/Json.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(ClassEvent, JsonLeavesOutMissingOptionalsAndDecodesStrictly)
{
    const ClassEvent full{u"期中考试"_s, u"2026-04-20"_s, u"10:00"_s, u"第一到五章"_s};
    EXPECT_EQ(ClassEvent::fromJson(full.toJson()), full);
    const ClassEvent allDay{u"作业截止"_s, u"2026-03-09"_s, std::nullopt, std::nullopt};
    EXPECT_EQ(QJsonDocument(allDay.toJson()).toJson(QJsonDocument::Compact),
              QByteArray(R"({"date":"2026-03-09","title":"作业截止"})"));

    const auto decode = [](const char *json) { return ClassEvent::fromJson(*Text::Json::parseObject(json)); };
    EXPECT_EQ(decode(R"({"title": "Quiz", "date": "2026-03-09", "time": null, "note": ""})"),
              (ClassEvent{u"Quiz"_s, u"2026-03-09"_s, std::nullopt, QString()}));
    for (const char *json : {R"({"date": "2026-03-09"})", R"({"title": "Quiz"})",
                             R"({"title": 7, "date": "2026-03-09"})",
                             R"({"title": "Quiz", "date": "2026-03-09", "time": 10})",
                             R"({"title": "Quiz", "date": "2026-03-09", "note": ["a"]})"})
        EXPECT_FALSE(decode(json)) << json;
}
