#pragma once

// A borderless vertical scroll area of the account pages, 292 wide and of a fixed height, that
// starts at the top and shows its bar only when the content is taller. Main thread only; it owns
// the content.

#include <QScrollArea>

class Scroller final : public QScrollArea
{
    Q_OBJECT

public:
    Scroller(QWidget *content, int height, QWidget *parent = nullptr);
};
