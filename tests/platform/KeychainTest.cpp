#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "platform/Log.h"
#include "platform/SecretServiceStore.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iostream>

#include <sys/stat.h>

namespace {

int modeOf(const QString &path)
{
    struct stat info{};
    return ::stat(QFile::encodeName(path).constData(), &info) == 0 ? int(info.st_mode & 0777) : -1;
}

class KeychainOnFile : public ::testing::Test
{
protected:
    void SetUp() override
    {
        path = folder.filePath(QStringLiteral("nested/secrets.json"));
        Keychain::useStore(std::make_unique<FileSecretStore>(path));
    }

    QTemporaryDir folder;
    QString path;
};

} // namespace

TEST_F(KeychainOnFile, SetGetDeleteAndEmptyValues)
{
    EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
    EXPECT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-ant-한국어-🔑")));
    EXPECT_TRUE(Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-openai")));
    EXPECT_EQ(Keychain::get(QStringLiteral("claude")), QStringLiteral("sk-ant-한국어-🔑"));
    EXPECT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-replaced")));
    EXPECT_EQ(Keychain::get(QStringLiteral("claude")), QStringLiteral("sk-replaced"));

    // An empty value deletes the item and still succeeds.
    EXPECT_TRUE(Keychain::set(QStringLiteral("claude"), QString()));
    EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
    EXPECT_EQ(Keychain::get(QStringLiteral("openai")), QStringLiteral("sk-openai"));

    Keychain::remove(QStringLiteral("openai"));
    Keychain::remove(QStringLiteral("never-stored"));
    EXPECT_FALSE(Keychain::get(QStringLiteral("openai")));

    // The file holds secrets, so only its owner may read it.
    EXPECT_EQ(modeOf(path), 0600);
}

TEST_F(KeychainOnFile, EmptyAndInvalidBytesReadAsTheSpecSays)
{
    FileSecretStore raw(path);
    ASSERT_TRUE(raw.write(QString::fromLatin1(Keychain::service), QStringLiteral("gemini"), QByteArray("ab\xff\xfe" "cd", 6)));
    const auto read = Keychain::get(QStringLiteral("gemini"));
    ASSERT_TRUE(read);
    EXPECT_EQ(*read, QString::fromUtf16(u"ab\uFFFD\uFFFDcd"));

    ASSERT_TRUE(raw.write(QString::fromLatin1(Keychain::service), QStringLiteral("empty"), QByteArray()));
    EXPECT_FALSE(Keychain::get(QStringLiteral("empty")));

    // Another service's item with the same account is not ours.
    ASSERT_TRUE(raw.write(QStringLiteral("other.service"), QStringLiteral("claude"), "foreign"));
    EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
}

TEST_F(KeychainOnFile, ACorruptFileReadsAsEmptyAndIsRepairedByTheNextSet)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{ this is not json");
    file.close();
    EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
    EXPECT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-new")));
    EXPECT_EQ(Keychain::get(QStringLiteral("claude")), QStringLiteral("sk-new"));
}

TEST(KeychainOnFileFolder, AStoreThatCannotWriteReportsFalse)
{
    QTemporaryDir folder;
    QFile blocker(folder.filePath(QStringLiteral("not-a-folder")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    Keychain::useStore(std::make_unique<FileSecretStore>(blocker.fileName() + QStringLiteral("/secrets.json")));
    EXPECT_FALSE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk")));
    EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
}

// Runs against a real GNOME Keyring in a private D-Bus session: the test program starts itself
// again inside dbus-run-session with an unlocked keyring and only this test selected.
TEST(SecretService, StoresReadsAndDeletesInARealKeyring)
{
    if (qEnvironmentVariableIsSet("QUILLET_INSIDE_KEYRING")) {
        ASSERT_TRUE(SecretServiceStore::isAvailable());
        Keychain::useStore(std::make_unique<SecretServiceStore>());
        EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
        EXPECT_TRUE(Keychain::set(QStringLiteral("claude"), QStringLiteral("sk-ant-secret-服务")));
        EXPECT_EQ(Keychain::get(QStringLiteral("claude")), QStringLiteral("sk-ant-secret-服务"));
        EXPECT_TRUE(Keychain::set(QStringLiteral("claude"), QString()));
        EXPECT_FALSE(Keychain::get(QStringLiteral("claude")));
        return;
    }
    const QString runner = QStandardPaths::findExecutable(QStringLiteral("dbus-run-session"));
    const QString keyring = QStandardPaths::findExecutable(QStringLiteral("gnome-keyring-daemon"));
    if (runner.isEmpty() || keyring.isEmpty()) {
        std::cout << "Skipped the real Secret Service: dbus-run-session or gnome-keyring-daemon is missing.\n";
        GTEST_SKIP();
    }
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QUILLET_INSIDE_KEYRING"), QStringLiteral("1"));
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    const QString script = QStringLiteral(
        "echo -n pw | gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1 || exit 77; "
        "exec \"$0\" --gtest_filter=SecretService.*");
    child.start(runner, {QStringLiteral("--"), QStringLiteral("sh"), QStringLiteral("-c"), script,
                         QCoreApplication::applicationFilePath()});
    ASSERT_TRUE(child.waitForFinished(60000));
    const QByteArray output = child.readAll();
    if (child.exitCode() == 77) {
        std::cout << "Skipped the real Secret Service: gnome-keyring-daemon would not start headless.\n";
        GTEST_SKIP();
    }
    EXPECT_EQ(child.exitCode(), 0) << output.constData();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.constData();
}

TEST(KeychainFallback, WithoutASecretServiceKeysGoToAPrivateFileAndTheLogSaysSoOnce)
{
    if (qEnvironmentVariableIsSet("QUILLET_INSIDE_KEYRING"))
        GTEST_SKIP();
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/quillet-test-bus");
    QFile::remove(Log::path());
    Keychain::useStore(nullptr);
    EXPECT_TRUE(Keychain::set(QStringLiteral("openai"), QStringLiteral("sk-file")));
    EXPECT_EQ(Keychain::get(QStringLiteral("openai")), QStringLiteral("sk-file"));

    const QString file = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
        + QStringLiteral("/secrets.json");
    EXPECT_EQ(modeOf(file), 0600);
    QFile log(Log::path());
    ASSERT_TRUE(log.open(QIODevice::ReadOnly));
    const QList<QByteArray> lines = log.readAll().split('\n');
    ASSERT_EQ(lines.size(), 2);  // one line and the final newline
    EXPECT_TRUE(lines[0].contains("No Secret Service answers")) << lines[0].constData();
    EXPECT_TRUE(lines[0].endsWith("readable only by you."));
}
