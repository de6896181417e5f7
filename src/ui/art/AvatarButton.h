#pragma once

// A round, borderless button of a fixed square size showing an account's pixel cat: at full
// strength with a letter (signed in), faint without one; an unread badge in the top right corner.
// Main thread only.

#include <QAbstractButton>

#include <optional>

class AvatarButton final : public QAbstractButton
{
    Q_OBJECT

public:
    explicit AvatarButton(int size, QWidget *parent = nullptr);

    void setLetter(const std::optional<QString> &letter);
    std::optional<QString> letter() const { return letter_; }
    void setBadge(bool badge);
    bool badge() const { return badge_; }
    // An index into PixelCat::all(); out of range draws cat 0.
    void setCat(int cat);
    int cat() const { return cat_; }
    // A ring in the accent colour around the oval (the chosen cat in a picker).
    void setRing(bool ring);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int size_;
    std::optional<QString> letter_;
    bool badge_ = false;
    bool ring_ = false;
    int cat_ = 0;
};
