#include "ui/desktop/DesktopServices.h"

#include "ui/common/Look.h"
#include "ui/desktop/SaveDialog.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDesktopServices>
#include <QMessageBox>
#include <QPushButton>
#include <QUrl>

DesktopServices::DesktopServices(QWidget *sheetParent)
    : sheetParent_(sheetParent)
{
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this] { onActiveChanged(); });
}

void DesktopServices::askToSave(const SaveQuestion &question, std::function<void(const SaveAnswer &)> answer)
{
    auto *dialog = new SaveDialog(question, sheetParent_);
    dialog->answered = std::move(answer);
    dialog->open();
}

void DesktopServices::confirmDiscard(std::function<void(bool discard)> answer)
{
    auto *box = new QMessageBox(QMessageBox::Warning, QStringLiteral("确定不保存这节课吗？"),
                                QStringLiteral("确定不保存这节课吗？"), QMessageBox::NoButton, sheetParent_);
    box->setInformativeText(QStringLiteral("录音、文字稿和 AI 笔记会被直接删除，无法恢复。"));
    box->setWindowModality(Qt::WindowModal);
    box->setAttribute(Qt::WA_DeleteOnClose);
    QPushButton *discard = box->addButton(QStringLiteral("不保存"), QMessageBox::DestructiveRole);
    QPushButton *back = box->addButton(QStringLiteral("返回"), QMessageBox::RejectRole);
    box->setDefaultButton(back);
    box->setEscapeButton(back);
    connect(box, &QMessageBox::finished, this, [box, discard, answer = std::move(answer)] {
        answer(box->clickedButton() == discard);
    });
    box->open();
}

void DesktopServices::showAbout(const QString &message, const QString &info)
{
    auto *box = new QMessageBox(QMessageBox::NoIcon, message, message, QMessageBox::Ok, sheetParent_);
    box->setIconPixmap(QApplication::windowIcon().pixmap(64, 64));
    box->setInformativeText(info);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void DesktopServices::notify(const QString &title, const QString &body)
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("/org/freedesktop/Notifications"),
        QStringLiteral("org.freedesktop.Notifications"), QStringLiteral("Notify"));
    call << QStringLiteral("Quillet") << 0u << QStringLiteral("quillet") << title << body << QStringList()
         << QVariantMap{{QStringLiteral("desktop-entry"), QStringLiteral("quillet")}} << -1;
    // Asynchronous and unanswered: with no notification server nothing happens.
    QDBusConnection::sessionBus().asyncCall(call);
}

void DesktopServices::open(const QString &path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void DesktopServices::quit()
{
    QCoreApplication::quit();
}

void DesktopServices::setTheme(const QString &theme)
{
    // Windows and their pages follow the application's palette.
    Look::apply(theme);
}

bool DesktopServices::isActive() const
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}
