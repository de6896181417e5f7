#pragma once

// The second recognition of a saved class: the whole recording is recognised again on the
// device, one recogniser per language, and cut into timed sentences that may replace the live
// transcript as a whole. The coordinator decides whether the result is plausible and applies it.
//
// transcribe() blocks for about a tenth of the recording's length per language: call it from a
// task of its own, never from the main thread. It runs one thread per language and returns when
// all are done. linesOf() is pure and safe from any thread.

#include "platform/FileRecognizer.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <stop_token>

namespace Refiner {

struct Line
{
    double t = 0;   // seconds from the start of the recording
    QString text;
    friend bool operator==(const Line &, const Line &) = default;
};

// One language of a run. The lecture language is primary, unless its recogniser was missing:
// then no language is, and every sentence must be in its language to stay.
struct Entry
{
    QString locale;
    bool primary = false;
};

// The recording at `path` recognised in `locales`, the lecture language first; locales without
// a model are skipped. The sentences of all languages, ordered by time (stable); no value when no
// locale has a model, the file can't be read, or `stop` was requested. May be empty.
std::optional<QList<Line>> transcribe(const QString &path, const QStringList &locales,
                                      const FileRecognizer::Factory &recognizers, std::stop_token stop = {});

// The kept sentences of one final result, each timed by its first words.
QList<Line> linesOf(const FileRecognizer::Result &result, const Entry &entry, bool primaryIsLatin);

} // namespace Refiner
