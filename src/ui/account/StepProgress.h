#pragma once

// The sign-in window's step counter: "第 n 步，共 m 步" beside a row of m marks, the first n in
// the accent colour and the rest in the separator colour. Main thread only.

#include <QWidget>

class ToneLabel;

class StepProgress final : public QWidget
{
    Q_OBJECT

public:
    explicit StepProgress(QWidget *parent = nullptr);

    void setStep(int step, int total);
    QString text() const;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QRect marks() const;

    ToneLabel *label_;
    int step_ = 0;
    int total_ = 0;
};
