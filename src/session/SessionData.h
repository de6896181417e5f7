#pragma once

// The record of one class: what was said and when, in which languages, and what the AI noted.
// Its JSON form in the class folder ("session.json") is the only truth about the class; the
// Markdown files beside it are regenerated from it.
//
// A plain value: holders copy it, change their own copy and hand it to SessionStore::write.
// Optional fields stay without a value when a stored record lacks them, so older records load
// unchanged and are saved again without the keys they never had.

#include <QDateTime>
#include <QList>
#include <QString>

#include <optional>

struct SessionData
{
    struct Line
    {
        double t = 0;          // seconds from the start of the class
        QString text;          // in the lecture language
        QString translation;   // in the answer language; empty until it exists

        friend bool operator==(const Line &, const Line &) = default;
    };

    struct Note
    {
        double t = 0;
        QString kind;          // stored and shown unchanged
        QString text;

        friend bool operator==(const Note &, const Note &) = default;
    };

    struct Term
    {
        QString term;          // in the lecture language
        QString meaning;       // in the answer language
        QString note;          // may be empty

        friend bool operator==(const Term &, const Term &) = default;
    };

    QString title;
    std::optional<QString> category;
    QDateTime started;
    double duration = 0;
    QString lecture;           // Language id at the start
    QString answer;            // Language id at the start
    QList<Line> lines;
    QList<Note> notes;
    std::optional<bool> audioRemoved;
    std::optional<QDateTime> deletedAt;
    std::optional<bool> refined;
    std::optional<QString> summary;
    std::optional<QList<Term>> vocabulary;

    // A fresh record started at `now`, titled with the default title of that moment.
    static SessionData make(const QString &lecture, const QString &answer, const QDateTime &now);

    // Pretty printed; dates as ISO 8601 in UTC, whole seconds; optional keys only with a value.
    QByteArray toJson() const;
    // Strict: a missing required key, a member of the wrong type or a date in any other form
    // fails the whole record. An absent or null optional key leaves the field without a value.
    static std::optional<SessionData> fromJson(const QByteArray &json);

    friend bool operator==(const SessionData &, const SessionData &) = default;
};
