#pragma once

// The four things a student can switch on and off during class. A plain value.

#include "settings/Config.h"

struct Switches
{
    bool questions = true;    // suggested answers
    bool exams = true;        // exam and homework notices, and dated events
    bool keyPoints = false;   // the running summary
    bool vocabulary = false;  // the vocabulary list

    static Switches from(const Config &config)
    {
        return {config.answerQuestions.value_or(true), config.recordExamNotes.value_or(true),
                config.recordKeyPoints.value_or(false), config.recordVocabulary.value_or(false)};
    }

    friend bool operator==(const Switches &, const Switches &) = default;
};
