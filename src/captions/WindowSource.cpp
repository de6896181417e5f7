#include "captions/WindowSource.h"

#include "platform/TesseractReader.h"
#include "platform/X11WindowCapture.h"

#include <cmath>

namespace {

// A picture of at most this many pixels is read: twice the size of anything up to a 4K screen's
// worth, less beyond; a window too large to be read at its own size is left out.
constexpr double picturePixelsAtMost = 16.0 * 1024 * 1024;

std::optional<QSize> pictureSize(QSize window)
{
    const double pixels = double(window.width()) * window.height();
    const double scale = std::min(2.0, std::sqrt(picturePixelsAtMost / pixels));
    if (scale < 1.0)
        return std::nullopt;
    return QSize(int(window.width() * scale), int(window.height() * scale));
}

QStringList withoutRepeats(QStringList list)
{
    list.removeDuplicates();
    return list;
}

} // namespace

WindowSource::Platform WindowSource::x11()
{
    return {[] { return X11WindowCapture::open(); },
            [](const QStringList &locales) -> std::unique_ptr<TextReader> { return TesseractReader::create(locales); }};
}

WindowSource::WindowSource(const QString &app, const QStringList &languages, Platform platform)
    : app_(app.toLower())
    , languages_(withoutRepeats(languages))
    , platform_(std::move(platform))
{
}

WindowSource::~WindowSource() = default;

std::optional<QString> WindowSource::start()
{
    auto opened = platform_.openCapture();
    if (auto *problem = std::get_if<QString>(&opened))
        return *problem;
    capture_ = std::move(std::get<std::unique_ptr<WindowCapture>>(opened));
    reader_ = platform_.makeReader(languages_);
    return std::nullopt;
}

QString WindowSource::read()
{
    if (!capture_)
        return {};
    QStringList texts;
    for (const WindowCapture::Window &window : capture_->windows()) {
        if (!window.application.toLower().contains(app_) || window.size.width() < smallest.width()
            || window.size.height() < smallest.height())
            continue;
        const auto size = pictureSize(window.size);
        const auto picture = size ? capture_->capture(window, *size) : std::nullopt;
        if (!picture)
            continue;
        texts << (reader_ ? reader_->lines(*picture).join(u'\n') : QString());
    }
    return texts.join(u'\n');
}
