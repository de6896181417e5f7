#pragma once

// The title row of an account sub-page: a borderless "‹ 返回" on the left and the page's title
// centred across the row. Main thread only.

#include <QWidget>

#include <functional>

class QPushButton;

class PageTitle final : public QWidget
{
    Q_OBJECT

public:
    explicit PageTitle(const QString &title, QWidget *parent = nullptr);

    QPushButton *back() const { return back_; }

    std::function<void()> onBack = [] {};

private:
    QPushButton *back_;
};
