#pragma once

// Where every box of a mind map picture goes, in points: the topic at the left, its main branches
// in a column to the right, their children further right. Each column is as wide as its widest
// box; leaves stack downwards, and a parent stands centred on its children. Main branches are
// parted by 10 points more than leaves of one branch, and two leaf main branches by 18.
//
// Measures text with the same fonts the picture draws with, so it needs a QGuiApplication (any
// thread). Kept apart from the drawing so the rules can be checked without pixels.

#include "report/MindNode.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QPointF>
#include <QSizeF>
#include <QString>

namespace MindMapLayout {

struct Box
{
    QString text;
    int depth = 0;  // the root is 0
    QList<Box> children;
    QSizeF size;
    QPointF origin;  // top left, from the top left of the picture
    QColor color;
};

struct Layout
{
    Box root;
    QSizeF size;  // the whole picture, margins included
};

// The label wraps inside this many points; a longer or taller text is cut off.
inline constexpr qreal maxTextWidth = 220;
inline constexpr qreal maxTextHeight = 200;

QList<QColor> palette();
// A CJK-capable face, so Chinese, Japanese and Korean labels never show empty boxes.
QFont font(int depth);
QColor textColor(int depth);
// Space between the box's edge and its text: 16 × 11 for the root, 11 × 6 below it.
QSizeF inset(int depth);

Layout layout(const MindNode &root);

} // namespace MindMapLayout
