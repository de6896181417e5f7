#pragma once

// A list of bilingual rows as the coordinator sees it: the panel's transcript and the subtitle
// bar's both implement it. Rows are addressed by the coordinator's row numbers; drafts below the
// rows are replaced as a whole. Main thread only.

#include <QList>
#include <QString>

#include <utility>

class TranscriptSurface
{
public:
    // (sentence, its translation or empty)
    using Drafts = QList<std::pair<QString, QString>>;

    TranscriptSurface() = default;
    virtual ~TranscriptSurface() = default;
    TranscriptSurface(const TranscriptSurface &) = delete;
    TranscriptSurface &operator=(const TranscriptSurface &) = delete;
    TranscriptSurface(TranscriptSurface &&) = delete;
    TranscriptSurface &operator=(TranscriptSurface &&) = delete;

    // Removes every row and draft; a non-empty hint is shown until the first row.
    virtual void clear(const QString &hint) = 0;
    virtual void addLine(int id, const QString &text) = 0;
    virtual void setText(int id, const QString &text) = 0;
    virtual void setTranslation(int id, const QString &text) = 0;
    virtual void setDrafts(const Drafts &drafts) = 0;
};
