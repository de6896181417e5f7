#pragma once

// The one persisted settings record: a value the coordinator loads at start, hands by copy to
// everything it builds and writes back whenever a window changes a setting.
//
// Optional fields stay without a value when a stored record lacks them; each reader applies its
// fallback where it uses the field, so older records load without migration.

#include "settings/Language.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

struct Config
{
    static constexpr auto key = "config.v1";

    QString provider = QStringLiteral("claude");
    QString model = QStringLiteral("claude-opus-5-5");
    QString effort = QStringLiteral("low");
    QString sourceType = QStringLiteral("mic");
    QString app = QStringLiteral("Coursedude");
    QString lectureLanguage = QStringLiteral("English");
    QString answerLanguage = QStringLiteral("Simplified Chinese");
    std::optional<QStringList> extraLanguages = QStringList();
    std::optional<bool> answerQuestions = true;
    std::optional<bool> recordExamNotes = true;
    std::optional<bool> recordKeyPoints = false;
    std::optional<bool> recordVocabulary = false;
    std::optional<QString> layout = QStringLiteral("vertical");
    std::optional<QString> theme = QStringLiteral("system");
    std::optional<double> panelFontSize = 15;
    std::optional<QString> panelBackground = QStringLiteral("glass");
    std::optional<QString> audioQuality = QStringLiteral("standard");
    std::optional<qint64> storageLimitGB = 5;
    std::optional<QString> builtinAI = QStringLiteral("claude");
    std::optional<QString> keySource = QStringLiteral("quillet");
    // A fresh record listens on this machine: most Linux users have no relay, and cloud speech
    // without one needs an OpenAI key. A stored record without the key means "local" too.
    std::optional<QString> recognizer = QStringLiteral("local");
    std::optional<QString> cloudModel = QStringLiteral("gpt-4o-mini-transcribe");
    std::optional<bool> refineAfterClass = true;
    std::optional<bool> emailReport = true;
    std::optional<bool> aiCorrect = true;
    std::optional<bool> autoClean = false;
    std::optional<QString> overflow = QStringLiteral("trimAudio");
    std::optional<bool> cloudSync = false;
    qint64 summaryMinutes = 5;
    QString profile = QStringLiteral(
        "International student. Wants to sound engaged and knowledgeable without disrupting the class.");

    // The stored record, or a fresh one when there is none or it can't be decoded (the stored
    // blob is left as it is until the next save).
    static Config load();
    // Replaces the stored record as a whole or not at all: false on a full disk or another write
    // failure, and the last good record stays.
    bool save() const;
    // Where the record lives: "config.v1.json" in the application's configuration folder, a file
    // of its own so that no failed write of other settings can cut it short.
    static QString path();

    QByteArray toJson() const;
    // Strict: the nine required keys with their types; an optional key of the wrong type fails too.
    static std::optional<Config> fromJson(const QByteArray &json);

    const Language &lecture() const { return Language::find(lectureLanguage); }
    const Language &answer() const { return Language::find(answerLanguage); }
    // The extra languages in order, duplicates kept, the lecture language left out.
    QList<Language> extras() const;
    // AI through the relay: keySource is "quillet" (or unset) and the relay is available.
    bool usesQuilletAI(bool relayAvailable) const;

    friend bool operator==(const Config &, const Config &) = default;
};
