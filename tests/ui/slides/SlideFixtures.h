#pragma once

// What the slide tests share: real PDF files written for the test, and timers driven by a manual
// clock so the follower's 12 seconds pass in no time.

#include "ManualClock.h"
#include "text/Schedule.h"

#include <QStringList>

#include <chrono>
#include <functional>
#include <vector>

namespace SlideFixtures {

// A PDF with one page per text, the text drawn large (CJK falls back on Noto Sans CJK). An empty text
// gives a page with only a picture on it.
void writePdf(const QString &path, const QStringList &pages);
// A PDF whose pages say "Page n: topic n", n from 1.
void writeNumberedPdf(const QString &path, int pageCount);
// A one-page PDF that asks for a password before anything can be read.
void writeEncryptedPdf(const QString &path);
// A flat OpenDocument presentation (LibreOffice reads it whatever its extension) of the texts.
void writePresentation(const QString &path, const QStringList &slides);

} // namespace SlideFixtures

// Single-shot timers that fire when the test advances the clock past them, in time order.
class ManualTimers final
{
public:
    Text::Schedule schedule();
    void advance(std::chrono::milliseconds duration);

private:
    struct Timer
    {
        ManualClock::Duration due;
        std::function<void()> task;
    };

    ManualClock clock_;
    std::vector<Timer> timers_;
};
