#pragma once

// A row that leads somewhere: a symbol, a title, a value on the right and a chevron. The row takes
// every click itself and acts on release if the pointer is still inside; with the keyboard, Space
// or Return. Main thread only.

#include <QWidget>

#include <functional>

class QLabel;

class ClickRow final : public QWidget
{
    Q_OBJECT

public:
    // An empty symbol leaves the row without one.
    ClickRow(const QString &symbol, const QString &title, QWidget *parent = nullptr);

    void setValue(const QString &value);
    QString value() const;

    std::function<void()> onClick = [] {};

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QLabel *value_;
    bool pressed_ = false;
};
