#pragma once

// The class being recorded: owns its record and its folder, stamps lines and notes with the time
// since the start, records the microphone into the folder, and keeps the folder current on disk
// with at most one save every two seconds.
//
// Main thread only, the delayed save included, so the record needs no lock. The coordinator
// holds at most one at a time and must call stopAudio() or finish() before dropping it: going
// away saves nothing more. The microphone hub and the clock must outlive the session.

#include "session/AudioRecorder.h"
#include "session/SessionData.h"
#include "text/Schedule.h"

#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace Text {
class Clock;
}

class LiveSession final
{
public:
    // The saves' timer: Qt's by default; tests run them on a clock of their own.
    using Schedule = Text::Schedule;

    // Makes the class folder (named after the start minute, made unique) and saves a valid
    // record into it at once.
    LiveSession(const QString &lecture, const QString &answer, int bitRate, MicHub &hub,
                const Text::Clock &clock, Schedule schedule = {});
    ~LiveSession();
    LiveSession(const LiveSession &) = delete;
    LiveSession &operator=(const LiveSession &) = delete;
    LiveSession(LiveSession &&) = delete;
    LiveSession &operator=(LiveSession &&) = delete;

    const QString &folder() const { return folder_; }
    const SessionData &data() const { return data_; }
    QString audioURL() const;
    // Seconds from the start to now, or to the moment the audio stopped.
    double elapsed() const;

    // Records into audioURL(); the problem worded for the user, or no value.
    std::optional<QString> startAudio();
    // Stops the recording; the first call fixes the end of elapsed().
    void stopAudio();
    // What is wrong with the recording's file (a full disk), worded for the user; the owner
    // shows it as a note when it changes. Absent while all is well.
    std::optional<QString> audioProblem() const { return recorder_.problem(); }

    // Appends a line stamped three seconds before now (not below 0); gives its index.
    qsizetype addLine(const QString &text);
    // Out-of-range indexes change nothing.
    void setText(qsizetype index, const QString &text);
    void setTranslation(qsizetype index, const QString &text);
    void addNote(const QString &kind, const QString &text);
    // Also adds the terms new to the word book.
    void addTerms(const QList<SessionData::Term> &terms);
    void setSummary(const QString &text);

    // Saved at once. An empty title keeps the old one; an empty category clears it.
    void rename(const QString &title, const std::optional<QString> &category);
    // Stops the audio, fixes the duration to the stopped time and saves at once. An empty title
    // keeps the old one; the category is stored as given, an empty one included.
    void finish(const QString &title, const std::optional<QString> &category);

private:
    void save();
    void scheduleSave();

    const Text::Clock &clock_;
    Schedule schedule_;
    QString folder_;
    SessionData data_;
    AudioRecorder recorder_;
    bool saveScheduled_ = false;
    std::optional<QDateTime> stoppedAt_;
    // Delayed saves hold this weakly: a session gone by then saves nothing.
    std::shared_ptr<LiveSession *> self_;
};
