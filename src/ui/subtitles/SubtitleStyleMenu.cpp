#include "ui/subtitles/SubtitleStyleMenu.h"

#include "ui/common/Look.h"
#include "ui/subtitles/SubtitleFonts.h"

#include <QLabel>
#include <QPainter>
#include <QStyleOptionMenuItem>
#include <QWidgetAction>

namespace {

constexpr int checkGutter = 20;

} // namespace

SubtitleStyleMenu::SubtitleStyleMenu(const Stored &stored, QWidget *parent)
    : QMenu(parent)
{
    setContentsMargins(checkGutter, 0, 0, 0);
    addFonts(stored.fontID);
    addSeparator();
    addColors(Target::translation, SubtitleColors::translationChoices(), stored.translation,
              SubtitleColors::translationDefault());
    addSeparator();
    addColors(Target::source, SubtitleColors::sourceChoices(), stored.source, SubtitleColors::sourceDefault());
}

void SubtitleStyleMenu::addHeader(const QString &title)
{
    // A quiet caption rather than a clickable row: the style draws no text for plain sections.
    auto *label = new QLabel(title, this);
    label->setContentsMargins(6, 5, 12, 3);
    QFont font = label->font();
    font = Look::scaled(font, 0.85);
    font.setWeight(QFont::DemiBold);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Look::secondaryText(palette));
    label->setPalette(palette);
    auto *header = new QWidgetAction(this);
    header->setDefaultWidget(label);
    header->setEnabled(false);
    addAction(header);
}

void SubtitleStyleMenu::addFonts(const QString &stored)
{
    addHeader(QStringLiteral("字体"));
    for (const SubtitleFonts::Font &font : SubtitleFonts::fonts()) {
        QAction *item = addAction(font.label);
        item->setCheckable(true);
        item->setChecked(font.id == stored);
        connect(item, &QAction::triggered, this, [this, id = font.id] { onFont(id); });
    }
}

void SubtitleStyleMenu::addColors(Target target, const QList<SubtitleColors::Choice> &choices,
                                  const QString &stored, const QColor &empty)
{
    addHeader(target == Target::translation ? QStringLiteral("译文颜色") : QStringLiteral("原文颜色"));
    for (const SubtitleColors::Choice &choice : choices) {
        QAction *item = addAction(SubtitleColors::swatch(choice.value, empty), choice.label);
        item->setCheckable(true);
        item->setChecked(choice.value == stored);
        connect(item, &QAction::triggered, this, [this, target, value = choice.value] { onColor(target, value); });
    }
    QAction *custom = addAction(QStringLiteral("自定义…"));
    custom->setData(target == Target::translation ? QStringLiteral("dst") : QStringLiteral("src"));
    connect(custom, &QAction::triggered, this, [this, target] { onCustomColor(target); });
}

void SubtitleStyleMenu::initStyleOption(QStyleOptionMenuItem *option, const QAction *action) const
{
    QMenu::initStyleOption(option, action);
    option->checkType = QStyleOptionMenuItem::NotCheckable;
    option->checked = false;
}

void SubtitleStyleMenu::paintEvent(QPaintEvent *event)
{
    QMenu::paintEvent(event);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (QAction *action : actions()) {
        if (!action->isChecked())
            continue;
        const QRect row = actionGeometry(action);
        const bool lit = action == activeAction();
        painter.setPen(QPen(palette().color(lit ? QPalette::HighlightedText : QPalette::Text), 1.6, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        const QPointF mid(checkGutter / 2.0 + 3, row.center().y() + 0.5);
        const QPointF mark[] = {mid + QPointF(-4, 0), mid + QPointF(-1.2, 3), mid + QPointF(4, -3.5)};
        painter.drawPolyline(mark, 3);
    }
}
