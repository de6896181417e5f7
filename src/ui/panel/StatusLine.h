#pragma once

// The status under the panel's title: a coloured dot and one line of plain text, cut at the tail.
// "● …" is running (green), "⚠️ …" a problem (orange), anything else quiet (grey). Main thread only.

#include <QColor>
#include <QWidget>

class ToneLabel;

class StatusLine final : public QWidget
{
    Q_OBJECT

public:
    explicit StatusLine(QWidget *parent = nullptr);

    void setStatus(const QString &text);
    QString text() const { return text_; }
    QColor dotColor() const { return dot_; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void elide();

    ToneLabel *label_;
    QString text_;
    QColor dot_;
};
