#include "report/InboxMessage.h"

#include "text/IsoDate.h"
#include "text/Json.h"

namespace {

const QString idKey = QStringLiteral("id");
const QString dateKey = QStringLiteral("date");
const QString titleKey = QStringLiteral("title");
const QString reportKey = QStringLiteral("report");
const QString readKey = QStringLiteral("read");
const QString emailedKey = QStringLiteral("emailed");

} // namespace

QJsonObject InboxMessage::toJson() const
{
    return {{idKey, id.toString(QUuid::WithoutBraces).toUpper()},
            {dateKey, Text::IsoDate::format(date)},
            {titleKey, title},
            {reportKey, report.toJson()},
            {readKey, read},
            {emailedKey, emailed}};
}

std::optional<InboxMessage> InboxMessage::fromJson(const QJsonObject &object)
{
    const auto idText = Text::Json::string(object, idKey);
    const auto dateText = Text::Json::string(object, dateKey);
    const auto title = Text::Json::string(object, titleKey);
    const auto reportObject = Text::Json::object(object, reportKey);
    const auto read = Text::Json::boolean(object, readKey);
    const auto emailed = Text::Json::boolean(object, emailedKey);
    if (!idText || !dateText || !title || !reportObject || !read || !emailed)
        return std::nullopt;
    const QUuid id = QUuid::fromString(*idText);
    const auto date = Text::IsoDate::parse(*dateText);
    auto report = ClassReport::fromJson(*reportObject);
    if (id.isNull() || !date || !report)
        return std::nullopt;
    return InboxMessage{id, *date, *title, std::move(*report), *read, *emailed};
}
