#pragma once

// The report mail: a class report rendered as one self-contained HTML fragment with inline styles
// (the notes' Markdown-like text converted on the way), posted with the mind map to the relay,
// which does the sending.
//
// html() is pure and callable from any thread. send() is called on the thread of `context` (the
// main thread): the picture and the HTML are made there, only the request runs on the network
// pool, and `done` runs back on context's thread unless context is gone by then.

#include "report/ClassReport.h"

#include <QDateTime>
#include <QFuture>
#include <QObject>
#include <QString>

#include <functional>
#include <optional>

namespace ReportMail {

using Outcome = std::optional<QString>;  // none when the relay took the mail, else the sentence

// The notes alone: headings, "- " / "• " / "* " lists, paragraphs and **bold**; nothing else.
QString notesHtml(const QString &notes);
// The date is shown in the user's locale.
QString html(const QString &title, const QDateTime &date, const ClassReport &report, bool hasImage);
QFuture<Outcome> send(const QString &title, const QDateTime &date, const ClassReport &report, QObject *context,
                      std::function<void(const Outcome &)> done);

} // namespace ReportMail
