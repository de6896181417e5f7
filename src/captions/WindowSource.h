#pragma once

// The caption source that reads another application's caption window: every read takes a
// picture of each large enough window of that application, by itself, at twice its size, and
// recognises the text in it. It holds no buffer and no draft: each read is a fresh look, and the
// engine drops the lines it has seen.
//
// Threads: start() and read() come from the engine's thread, one after another, never at once.
// The source owns the display connection and the text reader, both made once in start().

#include "captions/CaptionSource.h"
#include "platform/TextReader.h"
#include "platform/WindowCapture.h"

#include <QStringList>

#include <functional>
#include <memory>

class WindowSource final : public CaptionSource
{
public:
    // Where windows and text recognition come from.
    struct Platform
    {
        std::function<WindowCapture::Opened()> openCapture;
        // None when recognition can't be set up; the windows' texts are then empty.
        std::function<std::unique_ptr<TextReader>(const QStringList &locales)> makeReader;
    };
    // The X display of the environment and Tesseract.
    static Platform x11();

    // Windows smaller than this (toolbars, menus) are no caption windows.
    static constexpr QSize smallest{250, 200};

    // `app` is matched in any letter case; `languages` are locale identifiers, repeats dropped.
    WindowSource(const QString &app, const QStringList &languages, Platform platform);
    ~WindowSource() override;

    const QString &app() const { return app_; }
    const QStringList &languages() const { return languages_; }

    std::optional<QString> start() override;
    // The text lines of the application's windows, front window first, joined by "\n"; empty when
    // it shows no window or the display can't be read.
    QString read() override;

private:
    const QString app_;
    const QStringList languages_;
    const Platform platform_;
    std::unique_ptr<WindowCapture> capture_;
    std::unique_ptr<TextReader> reader_;
};
