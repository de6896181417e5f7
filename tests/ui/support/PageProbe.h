#pragma once

// Reads a real page back in tests: runs a script in a web view and waits for its value.

#include <QJsonValue>
#include <QString>
#include <QVariant>

class QWebEngineView;

namespace PageProbe {

QVariant evaluate(QWebEngineView *web, const QString &script);
// The value of a JSON-serialisable expression.
QJsonValue read(QWebEngineView *web, const QString &expression);

} // namespace PageProbe
