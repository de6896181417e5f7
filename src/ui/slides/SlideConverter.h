#pragma once

// Turns a presentation (PowerPoint, Keynote, OpenDocument) into a PDF with LibreOffice running
// headless as a child process. Never waits: the process runs on its own and reports through
// `done` on the main thread; one that takes longer than the time limit is killed.
//
// Main thread only. Starting a conversion while one runs ends the older one without a report.
// LibreOffice runs with a profile of its own in the cache folder, so a LibreOffice the student
// has open is neither used nor disturbed.

#include <QObject>
#include <QPointer>
#include <QString>

#include <chrono>
#include <functional>
#include <optional>

class QProcess;

class SlideConverter final
{
public:
    static constexpr std::chrono::milliseconds timeLimit{120000};

    SlideConverter() = default;
    ~SlideConverter();
    SlideConverter(const SlideConverter &) = delete;
    SlideConverter &operator=(const SlideConverter &) = delete;
    SlideConverter(SlideConverter &&) = delete;
    SlideConverter &operator=(SlideConverter &&) = delete;

    // The LibreOffice program on PATH, or empty when none is installed.
    static QString program();
    // Where the PDF of `source` is written in `folder`: its base name with ".pdf".
    static QString outputPath(const QString &source, const QString &folder);

    // Converts `source` into `folder` (made if missing). `done` gets the PDF's path when the
    // file exists afterwards, else none. Call only when program() is not empty.
    void convert(const QString &source, const QString &folder,
                 std::function<void(const std::optional<QString> &pdf)> done);

private:
    void stop();

    QObject context_;
    QPointer<QProcess> process_;
};
