#pragma once

// A rounded group of rows on the account pages: a lighter panel on the soft background, 280 wide,
// its rows 2 apart with 6 of inset. Main thread only; the rows become children of the card.

#include <QFrame>
#include <QList>

class Card final : public QFrame
{
    Q_OBJECT

public:
    explicit Card(const QList<QWidget *> &rows, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};
