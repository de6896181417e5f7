#pragma once

// A settings sheet with what it hands the coordinator recorded, on a keyring of the test's own
// that can be told to refuse writes, with settings and documents of the test's own.

#include "platform/SecretStore.h"
#include "ui/settings/SettingsSheet.h"
#include "ui/settings/SettingsWindow.h"

#include <QHash>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <optional>

// Remembers items until told to refuse writes, as a full disk or a locked keyring would.
class RefusingStore final : public SecretStore
{
public:
    std::optional<QByteArray> read(const QString &, const QString &account) override;
    bool write(const QString &, const QString &account, const QByteArray &data) override;
    void remove(const QString &, const QString &account) override;

    QHash<QString, QByteArray> items;
    bool refuse = false;
};

class SheetFixture : public ::testing::Test
{
public:
    SheetFixture();

    // Forgets every setting, key, record and recorded call, as a fresh start.
    void reset();
    void storeKey(const QString &account, const QString &key);

    template <typename Widget>
    Widget *get(const char *name) const
    {
        auto *widget = sheet.window()->findChild<Widget *>(QString::fromUtf8(name));
        if (!widget)
            ADD_FAILURE() << "no control " << name;
        return widget;
    }
    // Whether the control shows on its page, whichever page is on show.
    bool shown(const char *name) const;
    // Selects the menu row carrying `value`, as a click on it would.
    void choose(const char *popup, const QVariant &value) const;
    void toggle(const char *control) const;
    // Presses "完成".
    void press() const;
    // The text of the message on the sheet, which is then answered; empty when there is none.
    QString alertText() const;

    QTemporaryDir documents;
    RefusingStore *store = nullptr;
    SettingsSheet sheet;
    std::optional<std::pair<Config, QString>> saved;
    std::optional<double> barSize;
    bool closed = false;
};
