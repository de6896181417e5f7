#pragma once

// The model's side of a correction call, for tests that stand in for it: the sentences a prompt
// asks about, and a reply of fixes.

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>
#include <QVariant>

#include <utility>

namespace Corrections {

// The JSON array on the line after the prompt's heading.
inline QStringList sentences(const QString &prompt)
{
    const QString heading = QStringLiteral("New sentences, as a JSON array:\n");
    const qsizetype start = prompt.indexOf(heading) + heading.size();
    const QByteArray line = prompt.mid(start, prompt.indexOf(u'\n', start) - start).toUtf8();
    return QVariant(QJsonDocument::fromJson(line).array().toVariantList()).toStringList();
}

// Each fix as its text and translation, in order.
inline QString reply(const QList<std::pair<QString, QString>> &fixes)
{
    QJsonArray array;
    for (const auto &[text, translation] : fixes)
        array << QJsonObject{{QStringLiteral("text"), text}, {QStringLiteral("translation"), translation}};
    return QString::fromUtf8(QJsonDocument(array).toJson(QJsonDocument::Compact));
}

} // namespace Corrections
