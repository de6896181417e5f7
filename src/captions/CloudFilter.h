#pragma once

// Turns the text of a cloud transcription into the sentences worth a final line. A transcription
// model invents text for noise and silence and repeats its own prompt; so a sentence must hold a
// letter, be in a language of the class, not come from the prompt, be a real sentence rather
// than a scrap, match none of the known inventions, and not repeat a recent sentence.
//
// It remembers the recent sentences, so one filter serves one class on one thread (the uploader).

#include <QString>
#include <QStringList>

class CloudFilter final
{
public:
    // locales: the class's locales, the lecture's first; prompt: the prompt sent with each segment.
    CloudFilter(QStringList locales, QString prompt);

    // The sentences of text that pass, in order; each passing one is remembered as recent.
    QStringList kept(const QString &text);

    // Whether text is in a language of the class, or its language can't be told.
    bool allowed(const QString &text) const;
    // More than one word, or one of at least five letters ending in a closing mark.
    static bool substantial(const QString &text);
    // Whether text matches what a transcription model is known to make up.
    static bool invented(const QString &text);

private:
    bool passes(const QString &sentence) const;
    // False for a repeat of a recent sentence; records a new one.
    bool fresh(const QString &sentence);

    const QStringList locales_;
    const QString prompt_;
    QStringList recent_;   // normalised keys, the last 30
};
