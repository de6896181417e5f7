#pragma once

// An avatar cat: one shared 16 by 14 head grid plus colours, an eye style and accessories, drawn
// as hard square cells (anti-aliasing off) at any size. `all()` is the fixed catalogue of 26; an
// account stores an index into it, so its order never changes. The catalogue is built once on
// first use and is read-only afterwards; draw() runs on the main thread inside a paint.

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class QPainter;
class QRectF;

struct PixelCat final
{
    enum class Eyes { lines, dots, happy, sleepy, wink, sparkle };
    enum class Extra {
        stripes, blush, patches, glasses, bow, mask, headphones, crown,
        beanie, scarf, flower, tongue, freckles, tuxedo, star, innerEars
    };
    // Which way the painter's y axis runs; the cat comes out ears on top either way.
    enum class YAxis { down, up };

    QColor bg; // the caller paints the backdrop, draw() does not
    QColor line;
    std::optional<QColor> fill; // without it the head is only an outline
    QColor eye;
    Eyes eyes = Eyes::lines;
    QList<Extra> extras; // in drawing order

    // Only the rectangle's width sets the scale; every colour's alpha is replaced by `alpha`.
    void draw(QPainter &painter, const QRectF &rect, YAxis axis, double alpha = 1.0) const;

    static const std::vector<PixelCat> &all();
    // 14 rows of 16 cells, '#' inside the head; rows 0 to 3 are the ears.
    static const QStringList &head();
    // The account's cat; forwards to PixelCatChoice so the account client can share it.
    static int index(const std::optional<QString> &email);
    static void choose(int index, const QString &email);
};
