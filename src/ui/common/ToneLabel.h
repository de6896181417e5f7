#pragma once

// A label whose text colour is a role of the look (ordinary, secondary, or the red of a failure)
// rather than a fixed colour, so it follows a switch between light and dark. Main thread only.

#include <QLabel>

class ToneLabel final : public QLabel
{
    Q_OBJECT

public:
    enum class Tone { text, secondary, error };

    explicit ToneLabel(const QString &text = {}, Tone tone = Tone::text, QWidget *parent = nullptr);

    void setTone(Tone tone);
    Tone tone() const { return tone_; }

protected:
    void changeEvent(QEvent *event) override;

private:
    void paint();

    Tone tone_;
    bool painting_ = false;
};
