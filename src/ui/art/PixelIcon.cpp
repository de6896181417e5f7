#include "PixelIcon.h"

#include <QHash>
#include <QPainter>
#include <QPixmap>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace PixelIcon {

const std::vector<Sprite> &sprites()
{
    static const std::vector<Sprite> all{
        {u"fish"_s, u""_s, {
            u".....####......"_s,
            u"...########..##"_s,
            u".##.#########.#"_s,
            u"##############."_s,
            u".############.#"_s,
            u"...########..##"_s,
            u".....####......"_s,
        }},
        {u"crown"_s, u""_s, {
            u"#....#....#"_s,
            u"##..###..##"_s,
            u"###.###.###"_s,
            u"###########"_s,
            u"###########"_s,
            u"..........."_s,
            u"###########"_s,
        }},
        {u"mail"_s, u"envelope"_s, {
            u"#############"_s,
            u"##.........##"_s,
            u"#.#.......#.#"_s,
            u"#..##...##..#"_s,
            u"#....###....#"_s,
            u"#...........#"_s,
            u"#############"_s,
        }},
        {u"gear"_s, u"gearshape"_s, {
            u"....###...."_s,
            u".##.###.##."_s,
            u".#########."_s,
            u"..##...##.."_s,
            u"###.....###"_s,
            u"###.....###"_s,
            u"###.....###"_s,
            u"..##...##.."_s,
            u".#########."_s,
            u".##.###.##."_s,
            u"....###...."_s,
        }},
        {u"captions"_s, u"captions.bubble"_s, {
            u"###########"_s,
            u"#.........#"_s,
            u"#.#######.#"_s,
            u"#.........#"_s,
            u"#.#####...#"_s,
            u"#.........#"_s,
            u"###########"_s,
            u"..##......."_s,
            u"..#........"_s,
        }},
        {u"ai"_s, u"bubble.left.and.text.bubble.right"_s, {
            u"###########"_s,
            u"#....#....#"_s,
            u"#...###...#"_s,
            u"#..#####..#"_s,
            u"#...###...#"_s,
            u"#....#....#"_s,
            u"###########"_s,
            u".......##.."_s,
            u"........#.."_s,
        }},
        {u"slides"_s, u"rectangle.on.rectangle.angled"_s, {
            u"..#########"_s,
            u"..#.......#"_s,
            u"###.......#"_s,
            u"#.#.......#"_s,
            u"#.#########"_s,
            u"#.......#.."_s,
            u"#########.."_s,
        }},
        {u"merge"_s, u"rectangle.split.1x2"_s, {
            u"###########"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"###########"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"###########"_s,
        }},
        {u"pin"_s, u"pin.fill"_s, {
            u"..#######.."_s,
            u"...#####..."_s,
            u"...#####..."_s,
            u"...#####..."_s,
            u"..#######.."_s,
            u"###########"_s,
            u".....#....."_s,
            u".....#....."_s,
            u".....#....."_s,
        }},
        {u"books"_s, u"books.vertical"_s, {
            u"##.##..###."_s,
            u"##.##..###."_s,
            u"##.##...###"_s,
            u"##.##...###"_s,
            u"##.##....##"_s,
            u"##.##....##"_s,
            u"###########"_s,
        }},
        {u"key"_s, u"key"_s, {
            u".####......"_s,
            u"##..##....."_s,
            u"#....######"_s,
            u"##..##.#.#."_s,
            u".####..#.#."_s,
        }},
        {u"logout"_s, u"rectangle.portrait.and.arrow.right"_s, {
            u"######....."_s,
            u"#....#..#.."_s,
            u"#....#..##."_s,
            u"#....######"_s,
            u"#....#..##."_s,
            u"#....#..#.."_s,
            u"######....."_s,
        }},
        {u"chevron-right"_s, u"chevron.right"_s, {
            u"#..."_s,
            u".#.."_s,
            u"..#."_s,
            u"...#"_s,
            u"..#."_s,
            u".#.."_s,
            u"#..."_s,
        }},
        {u"chevron-left"_s, u"chevron.left"_s, {
            u"...#"_s,
            u"..#."_s,
            u".#.."_s,
            u"#..."_s,
            u".#.."_s,
            u"..#."_s,
            u"...#"_s,
        }},
        {u"clip"_s, u"paperclip"_s, {
            u".####.."_s,
            u"#....#."_s,
            u"#.##.#."_s,
            u"#.#..#."_s,
            u"#.#..#."_s,
            u"#.#..#."_s,
            u"#.#..#."_s,
            u"#.#..#."_s,
            u"#....#."_s,
            u".####.."_s,
        }},
        {u"send"_s, u"arrow.up.circle.fill"_s, {
            u"...#####..."_s,
            u".#########."_s,
            u".####.####."_s,
            u"####...####"_s,
            u"###.....###"_s,
            u"#####.#####"_s,
            u"#####.#####"_s,
            u"#####.#####"_s,
            u".####.####."_s,
            u".#########."_s,
            u"...#####..."_s,
        }},
        {u"close"_s, u"xmark.circle.fill"_s, {
            u"...#####..."_s,
            u".#########."_s,
            u".#.#####.#."_s,
            u"###.###.###"_s,
            u"####.#.####"_s,
            u"#####.#####"_s,
            u"####.#.####"_s,
            u"###.###.###"_s,
            u".#.#####.#."_s,
            u".#########."_s,
            u"...#####..."_s,
        }},
        {u"swap"_s, u"arrow.left.arrow.right"_s, {
            u"..#........"_s,
            u".##........"_s,
            u"###########"_s,
            u".##........"_s,
            u"..#........"_s,
            u"..........."_s,
            u"........#.."_s,
            u"........##."_s,
            u"###########"_s,
            u"........##."_s,
            u"........#.."_s,
        }},
        {u"open"_s, u"arrow.up.forward.square"_s, {
            u"......#####"_s,
            u".........##"_s,
            u"........#.#"_s,
            u".......#..#"_s,
            u"#####.#...."_s,
            u"#....#....."_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"###########"_s,
        }},
        {u"trash"_s, u"trash"_s, {
            u"...###..."_s,
            u"#########"_s,
            u"........."_s,
            u".#######."_s,
            u".#.#.#.#."_s,
            u".#.#.#.#."_s,
            u".#.#.#.#."_s,
            u".#.#.#.#."_s,
            u".#######."_s,
        }},
        {u"wand"_s, u"wand.and.stars"_s, {
            u".#......#.."_s,
            u"###....###."_s,
            u".#......#.."_s,
            u"......#...."_s,
            u".....#....."_s,
            u"....#......"_s,
            u"...#......."_s,
            u"..#........"_s,
            u".#........."_s,
            u"#.........."_s,
        }},
        {u"cpu"_s, u"cpu"_s, {
            u"..#.#.#.#.."_s,
            u".#########."_s,
            u"##.......##"_s,
            u".#.#####.#."_s,
            u"##.#...#.##"_s,
            u".#.#...#.#."_s,
            u"##.#####.##"_s,
            u".#.......#."_s,
            u".#########."_s,
            u"..#.#.#.#.."_s,
        }},
        {u"brush"_s, u"paintbrush"_s, {
            u"........###"_s,
            u".......####"_s,
            u"......####."_s,
            u".....####.."_s,
            u"....####..."_s,
            u"...###....."_s,
            u"..##......."_s,
            u".###......."_s,
            u"####......."_s,
            u"###........"_s,
        }},
        {u"drive"_s, u"internaldrive"_s, {
            u"###########"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"#......#.##"_s,
            u"#.........#"_s,
            u"###########"_s,
        }},
        {u"doc"_s, u"doc.text"_s, {
            u"######."_s,
            u"#....##"_s,
            u"#.....#"_s,
            u"#.###.#"_s,
            u"#.....#"_s,
            u"#.###.#"_s,
            u"#.....#"_s,
            u"#######"_s,
        }},
        {u"merge-on"_s, u"rectangle.split.1x2.fill"_s, {
            u"###########"_s,
            u"###########"_s,
            u"###########"_s,
            u"###########"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"###########"_s,
        }},
        {u"pin-off"_s, u"pin.slash"_s, {
            u"..#######.."_s,
            u"...#...#..."_s,
            u"...#...#..."_s,
            u"...#...#..."_s,
            u"..#.....#.."_s,
            u"###########"_s,
            u".....#....."_s,
            u".....#....."_s,
            u".....#....."_s,
        }},
        {u"ear"_s, u"ear"_s, {
            u"..####.."_s,
            u".#....#."_s,
            u"#..##..#"_s,
            u"#.#..#.#"_s,
            u"#....#.#"_s,
            u".#..#..#"_s,
            u"...#..#."_s,
            u"...#.#.."_s,
            u"..#..#.."_s,
            u".#..#..."_s,
            u"..##...."_s,
        }},
        {u"eye"_s, u"eye"_s, {
            u"....#####...."_s,
            u"..##.....##.."_s,
            u".#...###...#."_s,
            u"#...#####...#"_s,
            u".#...###...#."_s,
            u"..##.....##.."_s,
            u"....#####...."_s,
        }},
        {u"split"_s, u"rectangle.split.2x1"_s, {
            u"###########"_s,
            u"#....#....#"_s,
            u"#....#....#"_s,
            u"#....#....#"_s,
            u"#....#....#"_s,
            u"#....#....#"_s,
            u"###########"_s,
        }},
        {u"sparkles"_s, u"sparkles"_s, {
            u".....#....."_s,
            u".....#....."_s,
            u"....###...."_s,
            u"..#######.."_s,
            u"....###...."_s,
            u".....#..#.."_s,
            u".....#.###."_s,
            u"........#.."_s,
        }},
        {u"pencil"_s, u"pencil"_s, {
            u".........##"_s,
            u"........#.#"_s,
            u".......#.#."_s,
            u"......#.#.."_s,
            u".....#.#..."_s,
            u"....#.#...."_s,
            u"...#.#....."_s,
            u"..#.#......"_s,
            u".##........"_s,
            u"###........"_s,
        }},
        {u"folder"_s, u"folder"_s, {
            u"####......."_s,
            u"#...#######"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"#.........#"_s,
            u"###########"_s,
        }},
        {u"play"_s, u"play.circle.fill"_s, {
            u"...#####..."_s,
            u".#########."_s,
            u".##.######."_s,
            u"###..######"_s,
            u"###...#####"_s,
            u"###....####"_s,
            u"###...#####"_s,
            u"###..######"_s,
            u".##.######."_s,
            u".#########."_s,
            u"...#####..."_s,
        }},
        {u"pause"_s, u"pause.circle.fill"_s, {
            u"...#####..."_s,
            u".#########."_s,
            u".#########."_s,
            u"###..#..###"_s,
            u"###..#..###"_s,
            u"###..#..###"_s,
            u"###..#..###"_s,
            u"###..#..###"_s,
            u".#########."_s,
            u".#########."_s,
            u"...#####..."_s,
        }},
        {u"opacity"_s, u"circle.lefthalf.filled"_s, {
            u"...#####..."_s,
            u".#####...#."_s,
            u"######....#"_s,
            u"######....#"_s,
            u"######....#"_s,
            u"######....#"_s,
            u"######....#"_s,
            u"######....#"_s,
            u".#####...#."_s,
            u"...#####..."_s,
        }},
        {u"sliders"_s, u"slider.horizontal.3"_s, {
            u"..#........"_s,
            u"###########"_s,
            u"..#........"_s,
            u"..........."_s,
            u"......#...."_s,
            u"###########"_s,
            u"......#...."_s,
            u"..........."_s,
            u"....#......"_s,
            u"###########"_s,
            u"....#......"_s,
        }},
        {u"text-small"_s, u"textformat.size.smaller"_s, {
            u"..#.."_s,
            u".#.#."_s,
            u"#...#"_s,
            u"#####"_s,
            u"#...#"_s,
        }},
        {u"text-large"_s, u"textformat.size.larger"_s, {
            u"...#..."_s,
            u"..#.#.."_s,
            u".#...#."_s,
            u".#...#."_s,
            u"#######"_s,
            u"#.....#"_s,
            u"#.....#"_s,
        }},
        {u"palette"_s, u"paintpalette"_s, {
            u"...#####..."_s,
            u".##.....##."_s,
            u"#..##.....#"_s,
            u"#..##..##.#"_s,
            u"#......##.#"_s,
            u"#.##......#"_s,
            u"#.##...####"_s,
            u".#....#...."_s,
            u"..####....."_s,
        }},
        {u"wave"_s, u"waveform"_s, {
            u".....#....."_s,
            u"...#.#....."_s,
            u"...#.#.#..."_s,
            u".#.#.#.#.#."_s,
            u"##.#.#.#.##"_s,
            u".#.#.#.#.#."_s,
            u"...#.#.#..."_s,
            u"...#.#....."_s,
            u".....#....."_s,
        }},
        {u"cloud"_s, u"icloud"_s, {
            u"....####...."_s,
            u"...#....#..."_s,
            u".###.....##."_s,
            u"#..........#"_s,
            u"#..........#"_s,
            u".##########."_s,
        }},
    };
    return all;
}

const QHash<QString, QStringList> &art()
{
    static const QHash<QString, QStringList> table = [] {
        QHash<QString, QStringList> rows;
        for (const Sprite &sprite : sprites())
            rows.insert(sprite.name, sprite.rows);
        return rows;
    }();
    return table;
}

const QHash<QString, QString> &symbols()
{
    static const QHash<QString, QString> table = [] {
        QHash<QString, QString> names;
        for (const Sprite &sprite : sprites())
            if (!sprite.symbol.isEmpty())
                names.insert(sprite.symbol, sprite.name);
        return names;
    }();
    return table;
}

std::optional<QImage> image(const QString &name, int size)
{
    const auto found = art().constFind(name);
    if (found == art().constEnd())
        return std::nullopt;
    const QStringList &rows = *found;
    qsizetype columns = 0;
    for (const QString &row : rows)
        columns = std::max(columns, row.size());
    const double cell = double(size) / double(std::max(columns, rows.size()));
    const double left = (size - double(columns) * cell) / 2;
    const double top = (size - double(rows.size()) * cell) / 2;

    QImage picture(size, size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (qsizetype r = 0; r < rows.size(); ++r)
        for (qsizetype c = 0; c < rows[r].size(); ++c)
            if (rows[r][c] == u'#')
                painter.fillRect(QRectF(left + double(c) * cell, top + double(r) * cell, cell + 0.01,
                                        cell + 0.01),
                                 Qt::black);
    return picture;
}

QIcon symbol(const QString &name, int size)
{
    const auto sprite = symbols().constFind(name);
    if (sprite != symbols().constEnd()) {
        if (const std::optional<QImage> picture = image(*sprite, size)) {
            QIcon icon(QPixmap::fromImage(*picture));
            icon.setIsMask(true);
            return icon;
        }
    }
    return QIcon::fromTheme(name);
}

} // namespace PixelIcon
