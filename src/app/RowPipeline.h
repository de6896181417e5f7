#pragma once

// Turns the engine's finished lines and drafts into the rows the student reads. Lines that are
// fragments of one sentence join an open row (fewer than 160 characters, less than 8 s from the
// row's first line) until the row ends a sentence or 3 s pass without a new line; then the row
// is closed and goes to the Corrector once. Each change of a row gets a quick on-device
// translation; a late one that no longer fits the row is dropped, and the Corrector's precise
// translation wins for good. The draft is shown sentence by sentence with its own translations.
//
// Main thread only; the translations and the close timer come back there. Both surfaces, the
// translator and the clock outlive the pipeline; completions that arrive after it is gone do
// nothing.

#include "app/views/TranscriptSurface.h"
#include "text/Clock.h"
#include "text/Schedule.h"

#include <QHash>
#include <QSet>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class Corrector;
class LiveSession;
class Translator;

class RowPipeline final
{
public:
    using Schedule = Text::Schedule;

    static constexpr qsizetype joinLimit = 160;
    static constexpr std::chrono::milliseconds joinWindow{8000};
    static constexpr std::chrono::milliseconds closeAfter{3000};
    static constexpr std::chrono::milliseconds draftPause{900};

    RowPipeline(TranscriptSurface &panel, TranscriptSurface &bar, Translator &translator,
                const Text::Clock &clock, Schedule schedule);
    ~RowPipeline();
    RowPipeline(const RowPipeline &) = delete;
    RowPipeline &operator=(const RowPipeline &) = delete;
    RowPipeline(RowPipeline &&) = delete;
    RowPipeline &operator=(RowPipeline &&) = delete;

    // Whether a text ends a sentence: a closing mark, or a usual Korean or Japanese ending.
    static bool finished(const QString &text);

    // The Corrector that closed rows go to, or none; its fixes come back into the rows.
    void setCorrector(std::shared_ptr<Corrector> corrector);
    // The class that rows are recorded into, or none. Not owned.
    void setSession(LiveSession *session);

    void showLine(const QString &line);
    void showDraft(const QString &draft);
    void closeRow();
    // A new class: every row is forgotten (row numbers go on, never given twice).
    void reset();

private:
    struct OpenRow
    {
        int id = 0;
        QString text;
        Text::Clock::Duration since{};
    };

    void both(const std::function<void(TranscriptSurface &)> &show);
    void waitToClose();
    void quickTranslate(int id, const QString &text);
    void fix(int id, const QString &text, const QString &translation);
    void publish(const QStringList &sentences);
    bool askNow(const QString &sentence, bool last);

    TranscriptSurface &panel_;
    TranscriptSurface &bar_;
    Translator &translator_;
    const Text::Clock &clock_;
    Schedule schedule_;
    std::shared_ptr<Corrector> corrector_;
    LiveSession *session_ = nullptr;

    int lineID_ = 0;
    std::optional<OpenRow> openRow_;
    int timerGeneration_ = 0;   // a close timer of an older generation does nothing
    QHash<int, QString> rowText_;
    QSet<int> aiTranslated_;
    QHash<int, qsizetype> sessionLine_;
    QHash<QString, QString> draftCache_;
    std::optional<Text::Clock::Duration> lastDraftTranslation_;
    // Completions hold this weakly: after the pipeline is gone they find it expired.
    std::shared_ptr<RowPipeline *> alive_;
};
