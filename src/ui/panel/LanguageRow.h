#pragma once

// The panel's row under the top bar: the three-way view switch, the lecture language with the
// extras that may also be heard, the swap button and the language the student reads. Setters call
// no callback; the student's choices do. Main thread only.

#include <QStringList>
#include <QWidget>

#include <functional>

class IconButton;
class QButtonGroup;
class QComboBox;
class QMenu;
class QToolButton;

class LanguageRow final : public QWidget
{
    Q_OBJECT

public:
    explicit LanguageRow(QWidget *parent = nullptr);

    void setLanguages(const QString &lecture, const QString &answer, const QStringList &extras);
    // "both", "translation" or "ai"; anything else selects "both".
    void selectShow(const QString &show);
    QString lecture() const;
    QString answer() const;
    QStringList extras() const { return extras_; }
    // What the extras button shows: "＋" and the extras' names.
    QString extrasTitle() const;
    QMenu *extrasMenu() const { return menu_; }
    void swap();
    void toggleExtra(const QString &id);

    std::function<void(const QString &show)> onShow = [](const QString &) {};
    std::function<void(const QString &lecture, const QString &answer)> onLanguages = [](const QString &, const QString &) {};
    std::function<void(const QStringList &extras)> onExtras = [](const QStringList &) {};

private:
    void refreshExtras();
    void languagesChanged();

    QButtonGroup *view_;
    QComboBox *lecture_;
    QComboBox *answer_;
    QToolButton *extrasButton_;
    QMenu *menu_;
    QStringList extras_;
};
