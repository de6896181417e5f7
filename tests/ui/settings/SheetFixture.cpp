#include "SheetFixture.h"

#include "platform/Keychain.h"
#include "session/SessionStore.h"
#include "settings/Config.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QSettings>
#include <QStackedWidget>

std::optional<QByteArray> RefusingStore::read(const QString &, const QString &account)
{
    return items.contains(account) ? std::optional(items.value(account)) : std::nullopt;
}

bool RefusingStore::write(const QString &, const QString &account, const QByteArray &data)
{
    if (refuse)
        return false;
    items.insert(account, data);
    return true;
}

void RefusingStore::remove(const QString &, const QString &account)
{
    items.remove(account);
}

SheetFixture::SheetFixture()
{
    SessionStore::useDocumentsFolder(documents.path());
    sheet.onSave = [this](const Config &config, const QString &fontID) { saved = {config, fontID}; };
    sheet.onBarSize = [this](double points) { barSize = points; };
    sheet.onClose = [this] { closed = true; };
    reset();
}

void SheetFixture::reset()
{
    QSettings().clear();
    QFile::remove(Config::path());
    QDir(Config::path()).removeRecursively();
    auto fresh = std::make_unique<RefusingStore>();
    store = fresh.get();
    Keychain::useStore(std::move(fresh));
    saved.reset();
    barSize.reset();
    closed = false;
}

void SheetFixture::storeKey(const QString &account, const QString &key)
{
    store->items.insert(account, key.toUtf8());
}

bool SheetFixture::shown(const char *name) const
{
    QWidget *control = get<QWidget>(name);
    QWidget *page = control;
    while (page && !qobject_cast<QStackedWidget *>(page->parentWidget()))
        page = page->parentWidget();
    return control && control->isVisibleTo(page);
}

void SheetFixture::choose(const char *popup, const QVariant &value) const
{
    QComboBox *box = get<QComboBox>(popup);
    const int row = box->findData(value);
    ASSERT_GE(row, 0) << popup << " has no row " << value.toString().toStdString();
    box->setCurrentIndex(row);
}

void SheetFixture::toggle(const char *control) const
{
    get<QAbstractButton>(control)->click();
}

void SheetFixture::press() const
{
    get<QAbstractButton>("doneButton")->click();
}

QString SheetFixture::alertText() const
{
    auto *box = sheet.window()->findChild<QMessageBox *>(QStringLiteral("alert"));
    if (!box)
        return {};
    const QString text = box->text();
    box->setObjectName(QString());   // answered: the next look finds the next message
    box->done(QMessageBox::Ok);
    return text;
}
