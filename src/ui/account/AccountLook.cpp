#include "ui/account/AccountLook.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace AccountLook {

QFont font(double pixels, QFont::Weight weight)
{
    QFont f;
    // One face for Latin and CJK alike, so an address inside a Chinese sentence matches it.
    f.setFamilies({u"Noto Sans CJK SC"_s, f.family()});
    f.setPixelSize(qRound(pixels));
    f.setWeight(weight);
    return f;
}

ToneLabel *label(const QString &text, double pixels, ToneLabel::Tone tone, QWidget *parent)
{
    auto *result = new ToneLabel(text, tone, parent);
    result->setFont(font(pixels));
    result->setWordWrap(true);
    return result;
}

QPushButton *mainButton(const QString &text, int width, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setFixedSize(width, 38);
    button->setFont(font(14, QFont::DemiBold));
    button->setCursor(Qt::PointingHandCursor);
    // The accent is the same in both looks, so fixed colours need no repaint on a theme change.
    button->setStyleSheet(u"QPushButton { background-color: #0a84ff; color: white; border: none;"
                          u" border-radius: 9px; padding: 0 14px; }"
                          u"QPushButton:hover { background-color: #2b95ff; }"
                          u"QPushButton:pressed { background-color: #0a6fd6; }"
                          u"QPushButton:disabled { background-color: rgba(10, 132, 255, 0.42);"
                          u" color: rgba(255, 255, 255, 0.85); }"_s);
    return button;
}

QPushButton *linkButton(const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setFlat(true);
    button->setCursor(Qt::PointingHandCursor);
    button->setFont(font(13));
    button->setStyleSheet(u"QPushButton { color: #0a84ff; border: none; padding: 4px 6px; background: transparent; }"
                          u"QPushButton:hover { color: #3d9dff; }"
                          u"QPushButton:disabled { color: rgba(10, 132, 255, 0.45); }"_s);
    return button;
}

QPushButton *plainButton(const QString &text, QWidget *parent)
{
    auto *button = new QPushButton(text, parent);
    button->setFont(font(13));
    button->setCursor(Qt::PointingHandCursor);
    button->setMinimumHeight(30);
    return button;
}

void field(QLineEdit *edit, const QString &placeholder, int width, double pixels)
{
    edit->setPlaceholderText(placeholder);
    edit->setFont(font(pixels));
    edit->setFixedWidth(width);
    edit->setMinimumHeight(qRound(pixels * 2.4));
    edit->setTextMargins(6, 0, 6, 0);
}

} // namespace AccountLook
