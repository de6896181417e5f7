#include "platform/TesseractReader.h"

#include "text/Characters.h"

#include <tesseract/baseapi.h>
#include <tesseract/resultiterator.h>

#include <omp.h>

namespace {

// Text on a screen is drawn at about 96 dots per inch; the picture comes at twice its size.
constexpr int picturesPerInch = 192;

} // namespace

TesseractReader::TesseractReader(std::unique_ptr<tesseract::TessBaseAPI> api)
    : api_(std::move(api))
{
}

TesseractReader::~TesseractReader()
{
    api_->End();
}

std::unique_ptr<TesseractReader> TesseractReader::create(const QStringList &locales)
{
    // Tesseract's OpenMP threads spin while they wait: on a busy two-core laptop one read took four
    // times the time and five times the processor they save on an idle one. Nothing else here
    // uses OpenMP.
    omp_set_max_active_levels(0);
    auto api = std::make_unique<tesseract::TessBaseAPI>();
    // Tesseract writes its notes to stderr unless told otherwise.
    api->SetVariable("debug_file", "/dev/null");
    if (api->Init(nullptr, languagesOf(locales).toUtf8().constData(), tesseract::OEM_LSTM_ONLY) != 0)
        return nullptr;
    // Measured on caption windows of English and Korean lines at twice their size: one uniform block
    // reads both exactly, where automatic layout drops or garbles the Korean line.
    api->SetPageSegMode(tesseract::PSM_SINGLE_BLOCK);
    return std::unique_ptr<TesseractReader>(new TesseractReader(std::move(api)));
}

QString TesseractReader::languagesOf(const QStringList &locales)
{
    static const QList<std::pair<QString, QString>> codes{
        {QStringLiteral("ko"), QStringLiteral("kor")}, {QStringLiteral("zh"), QStringLiteral("chi_sim")},
        {QStringLiteral("ja"), QStringLiteral("jpn")}, {QStringLiteral("en"), QStringLiteral("eng")},
        {QStringLiteral("fr"), QStringLiteral("fra")}, {QStringLiteral("de"), QStringLiteral("deu")}};
    QStringList languages;
    for (const QString &locale : locales) {
        const QString language = locale.section(u'-', 0, 0).section(u'_', 0, 0);
        for (const auto &[code, tesseract] : codes) {
            if (code == language && !languages.contains(tesseract))
                languages << tesseract;
        }
    }
    return languages.isEmpty() ? QStringLiteral("eng") : languages.join(u'+');
}

QStringList TesseractReader::lines(const QImage &image)
{
    const QImage picture = image.convertToFormat(QImage::Format_RGB888);
    if (picture.isNull())
        return {};
    api_->SetImage(picture.constBits(), picture.width(), picture.height(), 3, int(picture.bytesPerLine()));
    api_->SetSourceResolution(picturesPerInch);
    QStringList lines;
    if (api_->Recognize(nullptr) == 0) {
        const std::unique_ptr<tesseract::ResultIterator> line(api_->GetIterator());
        if (line) {
            do {
                const std::unique_ptr<const char[]> text(line->GetUTF8Text(tesseract::RIL_TEXTLINE));
                const QString trimmed = text ? Text::trimmed(QString::fromUtf8(text.get())) : QString();
                if (!trimmed.isEmpty())
                    lines << trimmed;
            } while (line->Next(tesseract::RIL_TEXTLINE));
        }
    }
    api_->Clear();
    return lines;
}
