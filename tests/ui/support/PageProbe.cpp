#include "support/PageProbe.h"

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineView>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace PageProbe {

QVariant evaluate(QWebEngineView *web, const QString &script)
{
    // Native calls reach the page on the next turn of the event loop; let them go first.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::MetaCall);
    auto result = std::make_shared<std::optional<QVariant>>();
    web->page()->runJavaScript(script, [result](const QVariant &value) { *result = value; });
    EXPECT_TRUE(QTest::qWaitFor([&] { return result->has_value(); }, 120000)) << script.toStdString();
    return result->value_or(QVariant());
}

QJsonValue read(QWebEngineView *web, const QString &expression)
{
    const QString json = evaluate(web, QStringLiteral("JSON.stringify([") + expression + u"])").toString();
    return QJsonDocument::fromJson(json.toUtf8()).array().at(0);
}

} // namespace PageProbe
