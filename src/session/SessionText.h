#pragma once

// Every text a class produces: its default title, its folder name, the time stamps, and the
// Markdown files written beside the record so that a student can read a class in any editor.
// Dates are shown in local time in the words of the default QLocale (the user's, unless a
// program sets another). Pure functions, safe from any thread.

#include "session/SessionData.h"

#include <QString>

namespace SessionText {

// The label of classes without a course name.
inline constexpr QStringView uncategorized = u"未分类";

// The start moment as the locale writes an abbreviated month, day, hour with AM/PM marker where
// the locale uses one, and minute, followed by " 的记录".
QString defaultTitle(const QDateTime &date);
// The start moment in local time as "2026-11-18 09-05"; never changes after the folder is made.
QString folderName(const QDateTime &date);
// Whole seconds as "mm:ss", or "h:mm:ss" from an hour on.
QString clock(double seconds);

// "文字稿.md"
QString transcriptMarkdown(const SessionData &data);
// "单词表.md"; only written when the class has terms.
QString vocabularyMarkdown(const SessionData &data);
// "AI笔记.md"; only written when the class has notes or a summary.
QString notesMarkdown(const SessionData &data);
// The section a class adds to the word book for its new terms.
QString wordBookSection(const QList<SessionData::Term> &terms, const QString &title,
                        const std::optional<QString> &category);

} // namespace SessionText
