#pragma once

// Text recognition with Tesseract: one engine, loaded once with the languages of the class, reads
// every picture given to it as one block of lines. Locales map to Tesseract's languages: Korean,
// Simplified Chinese, Japanese, English, French, German; others are left out, and English
// stands in when none is left.
//
// One thread at a time (the engine's); loading takes about a second, so make it once per source.

#include "platform/TextReader.h"

#include <memory>

namespace tesseract {
class TessBaseAPI;
}

class TesseractReader final : public TextReader
{
public:
    // None when Tesseract can't load the languages' data.
    [[nodiscard]] static std::unique_ptr<TesseractReader> create(const QStringList &locales);
    ~TesseractReader() override;
    TesseractReader(const TesseractReader &) = delete;
    TesseractReader &operator=(const TesseractReader &) = delete;
    TesseractReader(TesseractReader &&) = delete;
    TesseractReader &operator=(TesseractReader &&) = delete;

    // "eng+kor" for ["en-US", "ko-KR"].
    static QString languagesOf(const QStringList &locales);

    QStringList lines(const QImage &image) override;

private:
    explicit TesseractReader(std::unique_ptr<tesseract::TessBaseAPI> api);

    const std::unique_ptr<tesseract::TessBaseAPI> api_;
};
