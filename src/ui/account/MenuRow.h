#pragma once

// One row of an account page's menu: an icon, a title on the left, a quieter value and a chevron
// on the right, 40 high. The row lights up under the pointer and acts on release when the pointer
// is still inside (or on Return or Space when it has the focus); its parts take no clicks of
// their own. An unread row shows an accent dot in place of its icon. A stacked row puts its
// value under the title, for lists whose titles are long (the message centre). Main thread only.

#include <QWidget>

#include <functional>

class MenuRow final : public QWidget
{
    Q_OBJECT

public:
    enum class Shape { oneLine, stacked };

    // `icon` is "pixel:" + a sprite name, or a system symbol name the pixel icons answer for.
    MenuRow(const QString &icon, const QString &title, const QString &value = {}, QWidget *parent = nullptr,
            Shape shape = Shape::oneLine);

    QString title() const { return title_; }
    void setValue(const QString &value);
    QString value() const { return value_; }
    void setUnread(bool unread);
    bool unread() const { return unread_; }
    // Sends the row's action, as a click does.
    void activate();

    QSize sizeHint() const override;

    std::function<void()> onClick = [] {};

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPixmap tinted(const QString &name, int size, const QColor &color) const;
    QFont sized(double pixels) const;
    void paintIcon(QPainter &painter, const QRect &slot);
    void paintTexts(QPainter &painter, int left, int right);

    Shape shape_;
    QString icon_;
    QString title_;
    QString value_;
    bool unread_ = false;
    bool hovering_ = false;
};
