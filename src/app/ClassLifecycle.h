#pragma once

// The two ends of a class. Start makes the class folder, records, starts the engine and the
// recording clock. Stop (or the teacher's closing words) asks the main model for the final notes;
// the notes become a checked report in the inbox and a mail, while the student answers the save
// question. A saved class recognised on this machine is then refined from its recording.
//
// Main thread only. The steps overlap in time and reach the folder in whatever order they finish,
// so each one addresses the folder by path and loads and writes it in one step.

#include "app/AppServices.h"
#include "app/AppState.h"
#include "app/AppWindows.h"
#include "report/ClassReport.h"
#include "session/Refiner.h"

#include <QObject>

#include <optional>

class ChatDesk;
class LiveObjects;
class RowPipeline;
class Translator;

class ClassLifecycle final
{
public:
    ClassLifecycle(AppWindows &windows, AppServices &services, AppState &state, Translator &translator,
                   RowPipeline &rows, ChatDesk &chat, LiveObjects &live);

    void startRecording();
    void stopRecording();
    void classEnded();
    void enforceStorage();
    void refine(const QString &folder, bool manual);
    // The application ends: a running class is kept as it is, without a question.
    void finishSilently();

private:
    struct Report
    {
        QString notes;
        QString transcript;
        QString title;
        QString language;
        QList<ClassEvent> liveEvents;
        bool mail = false;
    };

    void tick(int generation);
    void makeFinalSummary(const std::optional<QString> &folder, const std::function<void(bool)> &done);
    void makeReport(const Report &report, const std::shared_ptr<const AIProvider> &provider, const QString &system);
    void deliver(const Report &report, const ClassReport &made);
    void askToSave(const QString &name, const QString &category);
    void save(const QString &name, const QString &category);
    void confirmDiscard(const QString &name, const QString &category);
    using Refined = std::optional<QList<Refiner::Line>>;
    void translateRefinement(const QString &folder, bool manual, qsizetype liveLines, const Refined &result);
    void applyRefinement(const QString &folder, const QList<SessionData::Line> &lines);
    void endRefinement(const QString &folder);

    AppWindows &windows_;
    AppServices &services_;
    AppState &state_;
    Translator &translator_;
    RowPipeline &rows_;
    ChatDesk &chat_;
    LiveObjects &live_;
    QObject context_;   // model, report, mail and refinement replies: none after the coordinator
};
