#pragma once

// Spoken English for speech tests: sentences said by a flite voice ("slt" unless told, which
// PocketSphinx recognises best) or by espeak-ng, with pauses between them, in one 16 kHz mono
// 16-bit WAV file.

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

struct SpeechAudio
{
    struct Script
    {
        QStringList sentences;
        double leadSeconds = 0.5;    // quiet before the first sentence
        double pauseSeconds = 1.0;   // after each sentence
        QList<double> pausesAfter{};   // after each sentence, where given, instead of pauseSeconds
        double noise = 0;            // > 0: white noise of this amplitude under everything, as in a room
        QString voice = QStringLiteral("slt");   // a flite voice, or "espeak-ng" (US English)
    };

    QString path;
    QList<double> sentenceStarts;   // seconds into the file at which each sentence's sound begins
    QList<double> sentenceEnds;   // seconds into the file at which each sentence's sound ends
    double seconds = 0;

    // Three sentences of a lecture, one of them "Photosynthesis turns light into chemical energy.".
    static QStringList lecture();
    // Made in `folder`; none when flite or sox fails.
    static std::optional<SpeechAudio> make(const QString &folder, const Script &script);
};
