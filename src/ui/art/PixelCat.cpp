#include "PixelCat.h"

#include "account/PixelCatChoice.h"

#include <QPainter>
#include <QRectF>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

using Eyes = PixelCat::Eyes;
using Extra = PixelCat::Extra;

constexpr int canvasColumns = 20;
constexpr int canvasRows = 18;
constexpr int headOffset = 2; // the head grid lies at canvas column 2, row 2
const QColor white(Qt::white);

QColor rgb(QRgb value)
{
    return QColor(value);
}

// The 20 by 18 canvas of square cells the cat is painted on, mapped into the caller's rectangle.
class Canvas final
{
public:
    Canvas(QPainter &painter, const QRectF &rect, PixelCat::YAxis axis, double alpha)
        : painter_(painter), rect_(rect), axis_(axis), alpha_(alpha),
          u_(rect.width() * 0.8 / canvasColumns),
          left_(rect.center().x() - canvasColumns / 2.0 * u_),
          top_(rect.center().y() - canvasRows / 2.0 * u_ + 0.4 * u_)
    {
    }

    void paint(int c, int r, QColor colour) const
    {
        colour.setAlphaF(float(alpha_));
        // The extra hundredth hides hairlines between neighbouring cells.
        const double side = u_ + 0.01;
        const double y = axis_ == PixelCat::YAxis::down
                             ? top_ + r * u_
                             : rect_.bottom() - (top_ - rect_.top()) - (r + 1) * u_;
        painter_.fillRect(QRectF(left_ + c * u_, y, side, side), colour);
    }

    void mirrored(int c, int r, const QColor &colour) const
    {
        paint(c, r, colour);
        paint(canvasColumns - 1 - c, r, colour);
    }

    void row(int r, int fromColumn, int toColumn, const QColor &colour) const
    {
        for (int c = fromColumn; c <= toColumn; ++c)
            paint(c, r, colour);
    }

    void column(int c, int fromRow, int toRow, const QColor &colour) const
    {
        for (int r = fromRow; r <= toRow; ++r)
            paint(c, r, colour);
    }

    void dot(int c, int r, const QColor &colour) const
    {
        for (int dr = 0; dr < 2; ++dr)
            row(r + dr, c, c + 1, colour);
    }

    void arc(int c, const QColor &colour) const
    {
        paint(c, 9, colour);
        paint(c + 1, 8, colour);
        paint(c + 2, 9, colour);
    }

private:
    QPainter &painter_;
    QRectF rect_;
    PixelCat::YAxis axis_;
    double alpha_;
    double u_;
    double left_;
    double top_;
};

bool inside(int c, int r)
{
    const QStringList &head = PixelCat::head();
    const int x = c - headOffset;
    const int y = r - headOffset;
    return y >= 0 && y < head.size() && x >= 0 && x < head[y].size() && head[y][x] == u'#';
}

// Inside cells of a canvas block, the way fills and patches follow the head's shape.
void fillInside(const Canvas &canvas, QRect block, const QColor &colour)
{
    for (int r = block.top(); r <= block.bottom(); ++r)
        for (int c = block.left(); c <= block.right(); ++c)
            if (inside(c, r))
                canvas.paint(c, r, colour);
}

bool isEdge(int c, int r)
{
    return inside(c, r)
           && (!inside(c - 1, r) || !inside(c + 1, r) || !inside(c, r - 1) || !inside(c, r + 1));
}

const QRect wholeCanvas(0, 0, canvasColumns, canvasRows);

void paintMarking(const Canvas &canvas, Extra extra, const QColor &line)
{
    switch (extra) {
    case Extra::stripes:
        for (const auto &[c, r] : {std::pair{8, 6}, {8, 7}, {11, 6}, {11, 7}, {9, 6}, {10, 6}})
            canvas.paint(c, r, line);
        break;
    case Extra::blush:
        for (int c : {5, 6, 13, 14})
            canvas.paint(c, 11, rgb(0xff9db0));
        break;
    case Extra::patches:
        fillInside(canvas, QRect(QPoint(2, 2), QPoint(8, 7)), rgb(0xf2a04b));
        fillInside(canvas, QRect(QPoint(11, 2), QPoint(17, 7)), rgb(0x3a3030));
        break;
    case Extra::mask:
        fillInside(canvas, QRect(QPoint(0, 2), QPoint(canvasColumns - 1, 5)), rgb(0x6b4a35));
        fillInside(canvas, QRect(QPoint(7, 10), QPoint(12, 13)), rgb(0x8a6448));
        break;
    case Extra::freckles:
        canvas.mirrored(5, 11, line);
        canvas.mirrored(7, 11, line);
        canvas.mirrored(6, 12, line);
        break;
    default:
        break;
    }
}

void paintEyes(const Canvas &canvas, Eyes eyes, const QColor &eye)
{
    switch (eyes) {
    case Eyes::lines:
        canvas.column(6, 8, 9, eye);
        canvas.column(13, 8, 9, eye);
        break;
    case Eyes::dots:
        canvas.dot(6, 8, eye);
        canvas.dot(12, 8, eye);
        break;
    case Eyes::happy:
        canvas.arc(5, eye);
        canvas.arc(12, eye);
        break;
    case Eyes::sleepy:
        canvas.row(9, 6, 7, eye);
        canvas.row(9, 12, 13, eye);
        break;
    case Eyes::wink:
        canvas.dot(6, 8, eye);
        canvas.arc(11, eye);
        break;
    case Eyes::sparkle:
        canvas.dot(6, 8, eye);
        canvas.dot(12, 8, eye);
        canvas.paint(6, 8, white);
        canvas.paint(12, 8, white);
        break;
    }
}

void paintWhiskers(const Canvas &canvas, const QColor &line)
{
    for (int r : {10, 12}) {
        canvas.row(r, 0, 2, line);
        canvas.row(r, 17, 19, line);
    }
}

void paintGlasses(const Canvas &canvas, const QColor &line)
{
    for (int c = 5; c <= 8; ++c) {
        canvas.mirrored(c, 7, line);
        canvas.mirrored(c, 10, line);
    }
    for (int r = 8; r <= 9; ++r) {
        canvas.mirrored(5, r, line);
        canvas.mirrored(8, r, line);
    }
    canvas.row(8, 9, 10, line);
}

void paintHeadphones(const Canvas &canvas, const QColor &line)
{
    canvas.row(1, 3, 16, line);
    canvas.column(1, 1, 7, line);
    canvas.column(18, 1, 7, line);
    for (int r = 8; r <= 12; ++r) {
        canvas.row(r, 0, 2, rgb(0xff6b6b));
        canvas.row(r, 17, 19, rgb(0xff6b6b));
    }
}

void paintCrown(const Canvas &canvas)
{
    const QColor gold = rgb(0xffc83d);
    for (int c : {7, 9, 10, 12})
        canvas.paint(c, 3, gold);
    canvas.row(4, 7, 12, gold);
    canvas.row(5, 7, 12, gold);
    canvas.row(4, 9, 10, rgb(0xe5484d));
}

void paintBeanie(const Canvas &canvas)
{
    const QColor red = rgb(0xe5484d);
    canvas.row(1, 9, 10, white);
    canvas.row(2, 8, 11, red);
    canvas.row(3, 6, 13, red);
    canvas.row(4, 5, 14, red);
    canvas.row(5, 4, 15, rgb(0xb4232a));
}

void paintAccessory(const Canvas &canvas, Extra extra, const QColor &line)
{
    switch (extra) {
    case Extra::glasses:
        paintGlasses(canvas, line);
        break;
    case Extra::bow:
        for (int c : {12, 13, 15, 16}) {
            canvas.paint(c, 4, rgb(0xff4d8d));
            canvas.paint(c, 6, rgb(0xff4d8d));
        }
        canvas.row(5, 12, 16, rgb(0xff4d8d));
        break;
    case Extra::headphones:
        paintHeadphones(canvas, line);
        break;
    case Extra::crown:
        paintCrown(canvas);
        break;
    case Extra::beanie:
        paintBeanie(canvas);
        break;
    case Extra::scarf:
        canvas.row(14, 5, 14, rgb(0xe5484d));
        canvas.row(15, 7, 12, rgb(0xe5484d));
        canvas.column(12, 15, 17, rgb(0xe5484d));
        canvas.column(13, 15, 17, rgb(0xe5484d));
        paintWhiskers(canvas, line); // over the scarf
        break;
    case Extra::flower:
        for (const auto &[c, r] : {std::pair{5, 5}, {4, 6}, {6, 6}, {5, 7}})
            canvas.paint(c, r, rgb(0xff7aa8));
        canvas.paint(5, 6, rgb(0xffd54a));
        break;
    case Extra::star:
        canvas.dot(9, 6, rgb(0xffe58a));
        break;
    default:
        break;
    }
}

} // namespace

void PixelCat::draw(QPainter &painter, const QRectF &rect, YAxis axis, double alpha) const
{
    const Canvas canvas(painter, rect, axis, alpha);
    const auto has = [this](Extra extra) { return extras.contains(extra); };
    painter.setRenderHint(QPainter::Antialiasing, false);

    if (fill)
        fillInside(canvas, wholeCanvas, *fill);
    if (has(Extra::tuxedo))
        fillInside(canvas, QRect(QPoint(6, 10), QPoint(13, 15)), white);
    if (has(Extra::innerEars)) {
        for (const auto &[c, r] : {std::pair{4, 4}, {4, 5}, {5, 5}})
            canvas.mirrored(c, r, rgb(0xff9db0));
    }
    for (Extra extra : extras)
        paintMarking(canvas, extra, line);
    for (int r = 0; r < canvasRows; ++r)
        for (int c = 0; c < canvasColumns; ++c)
            if (isEdge(c, r))
                canvas.paint(c, r, line);
    paintEyes(canvas, eyes, eye);
    canvas.dot(9, 11, line); // the nose
    if (has(Extra::tongue))
        canvas.row(13, 9, 10, rgb(0xff6b8a));
    if (!has(Extra::headphones) && !has(Extra::scarf))
        paintWhiskers(canvas, line);
    for (Extra extra : extras)
        paintAccessory(canvas, extra, line);

    painter.setRenderHint(QPainter::Antialiasing, true);
}

const std::vector<PixelCat> &PixelCat::all()
{
    static const std::vector<PixelCat> cats{
        {rgb(0x111111), rgb(0x9a9a9a), std::nullopt, rgb(0x9a9a9a), Eyes::lines, {}},
        {rgb(0xffe7b8), rgb(0x5a3410), rgb(0xf59e3b), rgb(0x5a3410), Eyes::dots, {Extra::stripes}},
        {rgb(0xcfe6ff), rgb(0x3b4a5a), rgb(0xffffff), rgb(0x3b4a5a), Eyes::happy, {Extra::blush}},
        {rgb(0xe4dbff), rgb(0x111116), rgb(0x2a2a33), rgb(0xffd54a), Eyes::dots, {}},
        {rgb(0xcff3e3), rgb(0x36403b), rgb(0xb9c2c7), rgb(0x36403b), Eyes::sleepy, {}},
        {rgb(0xffe0e6), rgb(0x4a2a2a), rgb(0xfff6ec), rgb(0x4a2a2a), Eyes::dots, {Extra::patches}},
        {rgb(0xfff3c4), rgb(0x333333), rgb(0xe8d7b9), rgb(0x333333), Eyes::lines, {Extra::glasses}},
        {rgb(0xffd9e8), rgb(0x5a2a3c), rgb(0xffffff), rgb(0x5a2a3c), Eyes::wink, {Extra::bow}},
        {rgb(0x0e1a2b), rgb(0x4cc9f0), std::nullopt, rgb(0x4cc9f0), Eyes::lines, {}},
        {rgb(0x10241a), rgb(0x6ee7a8), std::nullopt, rgb(0x6ee7a8), Eyes::happy, {}},
        {rgb(0xf3e9dc), rgb(0x3d2b1f), rgb(0xf1e2cc), rgb(0x2f7bd8), Eyes::dots, {Extra::mask}},
        {rgb(0xdde8f0), rgb(0x2d3640), rgb(0x9aa6b2), rgb(0x2d3640), Eyes::lines, {Extra::headphones}},
        {rgb(0x151515), rgb(0xff8fb1), std::nullopt, rgb(0xff8fb1), Eyes::wink, {}},
        {rgb(0x3a2e5c), rgb(0x2a1f10), rgb(0xffe9a8), rgb(0x2a1f10), Eyes::sparkle, {Extra::crown}},
        {rgb(0xdcebff), rgb(0x4a2c14), rgb(0xf7b267), rgb(0x4a2c14), Eyes::dots, {Extra::beanie}},
        {rgb(0xe8f5ff), rgb(0x34404c), rgb(0xffffff), rgb(0x34404c), Eyes::happy, {Extra::scarf}},
        {rgb(0xe9ffe5), rgb(0x4b3b2a), rgb(0xfff3e0), rgb(0x4b3b2a), Eyes::dots,
         {Extra::flower, Extra::innerEars}},
        {rgb(0xffe3c2), rgb(0x3e2a14), rgb(0xc68642), rgb(0x3e2a14), Eyes::happy, {Extra::tongue}},
        {rgb(0xfff0d6), rgb(0x5b3a12), rgb(0xf8c471), rgb(0x5b3a12), Eyes::dots, {Extra::freckles}},
        {rgb(0xd6f5f0), rgb(0x0e0e12), rgb(0x1f1f26), rgb(0x7ce38b), Eyes::sparkle, {Extra::tuxedo}},
        {rgb(0x1d2340), rgb(0x0f1430), rgb(0x3c4a78), rgb(0xffd54a), Eyes::dots, {Extra::star}},
        {rgb(0xffe6f0), rgb(0x6a2e48), rgb(0xffc1d9), rgb(0x6a2e48), Eyes::sparkle, {Extra::innerEars}},
        {rgb(0x1a1206), rgb(0xffb347), std::nullopt, rgb(0xffb347), Eyes::dots, {}},
        {rgb(0xeffffa), rgb(0x2bb673), std::nullopt, rgb(0x2bb673), Eyes::lines, {}},
        {rgb(0xf1e6ff), rgb(0x3b2a24), rgb(0x8d6e63), rgb(0x3b2a24), Eyes::sleepy, {Extra::glasses}},
        {rgb(0xe3e9f2), rgb(0x2e3a4c), rgb(0x8fa3bf), rgb(0x7ce38b), Eyes::sparkle, {Extra::innerEars}},
    };
    return cats;
}

const QStringList &PixelCat::head()
{
    static const QStringList rows{
        u".#............#."_s, u".##..........##."_s, u".###........###."_s, u".####......####."_s,
        u".##############."_s, u".##############."_s, u"################"_s, u"################"_s,
        u"################"_s, u"################"_s, u".##############."_s, u"..############.."_s,
        u"...##########..."_s, u".....######....."_s,
    };
    return rows;
}

int PixelCat::index(const std::optional<QString> &email)
{
    return PixelCatChoice::index(email);
}

void PixelCat::choose(int index, const QString &email)
{
    PixelCatChoice::choose(index, email);
}
