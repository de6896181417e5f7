#pragma once

// Text recognition in a picture: the lines of text it shows, top to bottom, in the languages the
// reader was made for. One thread at a time; owned by whoever made it.

#include <QImage>
#include <QStringList>

class TextReader
{
public:
    TextReader() = default;
    virtual ~TextReader();
    TextReader(const TextReader &) = delete;
    TextReader &operator=(const TextReader &) = delete;
    TextReader(TextReader &&) = delete;
    TextReader &operator=(TextReader &&) = delete;

    // The recognised lines, none empty; no lines when recognition fails.
    virtual QStringList lines(const QImage &image) = 0;
};
