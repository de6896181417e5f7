#pragma once

// The account window's plans page: during the beta there is nothing to buy, and it says so.
// Main thread only.

#include <QWidget>

class PageTitle;

class PlansPage final : public QWidget
{
    Q_OBJECT

public:
    explicit PlansPage(QWidget *parent = nullptr);

    PageTitle *title() const { return title_; }

private:
    PageTitle *title_;
};
