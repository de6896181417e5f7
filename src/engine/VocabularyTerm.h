#pragma once

// One subject term the engine found in the lecture, with its meaning in the answer language and
// a short note on what it means in this subject. A plain value.

#include <QString>

struct VocabularyTerm
{
    QString term;
    QString meaning;
    QString note;

    friend bool operator==(const VocabularyTerm &, const VocabularyTerm &) = default;
};
