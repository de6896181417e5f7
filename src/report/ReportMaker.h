#pragma once

// The report at the end of a class: one more model call checks the draft notes against the whole
// transcript and extracts dated events and a mind map. Whether the reply can be used at all is
// decided here; when it can't, the caller falls back on the draft notes alone.
//
// make() is called on the main thread (or any thread with an event loop): the chat runs on the
// network pool and onReport runs later on context's thread, never if context is gone by then.
// Holds no state.

#include "ai/AIProvider.h"
#include "report/ClassReport.h"

#include <QDate>
#include <QFuture>
#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace ReportMaker {

using ReportHandler = std::function<void(const std::optional<ClassReport> &report)>;

// The template; placeholders {context} {notes} {today} {answer_language}.
QString prompt();
// The template filled for one class held on `today`.
QString request(const QString &notes, const QString &transcript, const QString &language, const QDate &today);
// The usable report in a model's reply, or none: the JSON between the first "{" and the last "}",
// strict, with trimmed notes that aren't empty, events of the form "YYYY-MM-DD" only, and times
// that don't read "H:mm" or "HH:mm" turned into all-day events.
std::optional<ClassReport> read(const std::optional<QString> &reply);

// `language` is the id of the answer language.
QFuture<std::optional<QString>> make(std::shared_ptr<const AIProvider> provider, const QString &system,
                                     const QString &notes, const QString &transcript, const QString &language,
                                     QObject *context, ReportHandler onReport,
                                     const QDate &today = QDate::currentDate());

} // namespace ReportMaker
