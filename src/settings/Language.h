#pragma once

// The fixed table of the six languages a lecture may be held or read in. A language goes into a
// prompt by its id, into a note by its label, and into speech and translation by its locale.

#include <QList>
#include <QString>

struct Language
{
    QString id;      // English name, the value stored in the settings
    QString label;   // name shown in menus
    QString locale;  // BCP 47 tag for speech recognition and translation
    QString script;  // regular-expression class matching one letter of the language

    // In menu order; row 0 is the fallback of find().
    static const QList<Language> &all();
    // "Chinese" (older records) reads as "Simplified Chinese"; an unknown id gives row 0.
    static const Language &find(const QString &id);

    friend bool operator==(const Language &, const Language &) = default;
};
