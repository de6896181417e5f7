#pragma once

// A borderless button showing one pixel sprite tinted with a colour of the palette: the quiet
// secondary colour, the accent, white (on the dark bar) or red. The tint follows light and dark
// changes. The description is also the tool tip and the accessible name. Main thread only.

#include <QToolButton>

class IconButton final : public QToolButton
{
    Q_OBJECT

public:
    enum class Tint { secondary, accent, white, red, text };

    // `size` is the sprite's height in pixels.
    IconButton(const QString &symbol, const QString &description, QWidget *parent = nullptr, int size = 15);

    void setSymbol(const QString &symbol);
    QString symbol() const { return symbol_; }
    void setTint(Tint tint);
    Tint tint() const { return tint_; }
    void setDescription(const QString &description);

protected:
    void changeEvent(QEvent *event) override;

private:
    void render();

    QString symbol_;
    Tint tint_ = Tint::secondary;
    int size_;
};
