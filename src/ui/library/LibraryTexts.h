#pragma once

// The words the library shows about a class: its row's second line, the line under its title,
// the AI notes and the word list as plain text, and the empty-library messages. Dates read in the
// user's locale and zone. Main thread only (the date formats are made once and reused).

#include "session/SessionData.h"

#include <QString>

namespace LibraryTexts {

struct RowState
{
    bool live = false;
    std::optional<int> daysLeft;   // set for a deleted class
};

// "● 录音中 · 12 天后永久删除 · 经济学 · Nov 18, 9:05 AM · 45:10", with the parts that exist.
QString rowDetail(const SessionData &data, const RowState &state);

struct InfoState
{
    std::optional<int> daysLeft;   // set for a deleted class
    bool refining = false;
};

// "Nov 18, 2026, 9:05 AM · 45:10 · 120 句", then the deletion and refinement states.
QString info(const SessionData &data, const InfoState &state);
QString aiNotes(const SessionData &data);
QString words(const SessionData &data);
// The message while a shelf is empty.
QString empty(bool trash);

} // namespace LibraryTexts
