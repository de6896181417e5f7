#include "report/PngEncoder.h"

#include <png.h>

#include <csetjmp>

namespace PngEncoder {

namespace {

void append(png_structp png, png_bytep data, png_size_t length)
{
    auto *bytes = static_cast<QByteArray *>(png_get_io_ptr(png));
    bytes->append(reinterpret_cast<const char *>(data), qsizetype(length));
}

void flush(png_structp) {}

// libpng reports errors by longjmp: nothing in this frame may need a destructor.
bool write(png_structp png, png_infop info, const QImage &rgb, QByteArray *bytes)
{
    if (setjmp(png_jmpbuf(png)))
        return false;
    png_set_write_fn(png, bytes, append, flush);
    png_set_IHDR(png, info, png_uint_32(rgb.width()), png_uint_32(rgb.height()), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(png, 1);
    png_write_info(png, info);
    for (int y = 0; y < rgb.height(); ++y)
        png_write_row(png, rgb.constScanLine(y));
    png_write_end(png, info);
    return true;
}

} // namespace

std::optional<QByteArray> encode(const QImage &image)
{
    const QImage rgb = image.convertToFormat(QImage::Format_RGB888);
    if (rgb.isNull())
        return std::nullopt;
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png ? png_create_info_struct(png) : nullptr;
    QByteArray bytes;
    const bool written = info && write(png, info, rgb, &bytes);
    png_destroy_write_struct(&png, info ? &info : nullptr);
    if (!written)
        return std::nullopt;
    return bytes;
}

} // namespace PngEncoder
