#include "account/Relay.h"

#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"

#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(Relay, AddressAndSessionHeaderFollowSettingsAndKeychain)
{
    QTemporaryDir folder;
    Keychain::useStore(std::make_unique<FileSecretStore>(folder.filePath(QStringLiteral("secrets.json"))));
    QSettings().remove(QStringLiteral("relay.url"));
    EXPECT_FALSE(Relay::available());
    EXPECT_TRUE(Relay::headers().isEmpty());

    QSettings().setValue(QStringLiteral("relay.url"), QStringLiteral("http://127.0.0.1:9/api"));
    EXPECT_TRUE(Relay::available());
    EXPECT_EQ(Relay::url(QStringLiteral("/anthropic/v1/messages")),
              QUrl(QStringLiteral("http://127.0.0.1:9/api/anthropic/v1/messages")));

    ASSERT_TRUE(Keychain::set(QStringLiteral("quillet-session"), QStringLiteral("tok-1")));
    const QMap<QString, QString> expected{{QStringLiteral("x-quillet-session"), QStringLiteral("tok-1")}};
    EXPECT_EQ(Relay::headers(), expected);
    Keychain::remove(QStringLiteral("quillet-session"));
    EXPECT_TRUE(Relay::headers().isEmpty());
    QSettings().remove(QStringLiteral("relay.url"));
}
