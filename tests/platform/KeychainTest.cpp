#include "platform/FileSecretStore.h"
#include "platform/Keychain.h"
#include "platform/Log.h"
#include "platform/SecretServiceStore.h"

#include "Files.h"
#include "QtPrinters.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

// A file only its owner may read and write (mode 0600).
constexpr auto ownerOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;

// Sets, replaces, reads and deletes through whichever store the keychain uses.
void expectSetGetAndDelete()
{
    EXPECT_FALSE(Keychain::get(u"claude"_s));
    EXPECT_TRUE(Keychain::set(u"claude"_s, u"sk-ant-한국어-🔑"_s));
    EXPECT_TRUE(Keychain::set(u"openai"_s, u" sk-openai\n"_s)) << "pasted white space is no part of a key";
    EXPECT_EQ(Keychain::get(u"claude"_s), u"sk-ant-한국어-🔑"_s);
    EXPECT_TRUE(Keychain::set(u"claude"_s, u"sk-replaced"_s));
    EXPECT_EQ(Keychain::get(u"claude"_s), u"sk-replaced"_s);
    EXPECT_TRUE(Keychain::set(u"claude"_s, QString())) << "an empty value deletes the item and succeeds";
    EXPECT_FALSE(Keychain::get(u"claude"_s));
    EXPECT_EQ(Keychain::get(u"openai"_s), u"sk-openai"_s);
    Keychain::remove(u"openai"_s);
    Keychain::remove(u"never-stored"_s);
    EXPECT_FALSE(Keychain::get(u"openai"_s));
}

TEST(KeychainTest, AFileStoreKeepsWhatWasSetWhereOnlyItsOwnerReadsIt)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(u"nested/secrets.json"_s);
    Keychain::useStore(std::make_unique<FileSecretStore>(path));
    expectSetGetAndDelete();
    EXPECT_EQ(QFile::permissions(path), ownerOnly);

    FileSecretStore raw(path);
    const QString service = QString::fromLatin1(Keychain::service);
    ASSERT_TRUE(raw.write(service, u"gemini"_s, QByteArray("ab\xff\xfe" "cd", 6)));
    EXPECT_EQ(Keychain::get(u"gemini"_s), u"ab\uFFFD\uFFFDcd"_s) << "invalid UTF-8 is replaced, never refused";
    ASSERT_TRUE(raw.write(service, u"empty"_s, QByteArray()));
    EXPECT_FALSE(Keychain::get(u"empty"_s)) << "an empty item reads as absent";
    ASSERT_TRUE(raw.write(u"other.service"_s, u"claude"_s, "foreign"));
    EXPECT_FALSE(Keychain::get(u"claude"_s)) << "another service's item is not ours";

    ASSERT_TRUE(QFile::resize(path, 12));
    EXPECT_FALSE(Keychain::get(u"gemini"_s)) << "a file cut short reads as empty";
    EXPECT_TRUE(Keychain::set(u"claude"_s, u"sk-new"_s));
    EXPECT_EQ(Keychain::get(u"claude"_s), u"sk-new"_s) << "and the next set repairs it";

    // On a full disk the write fails and says so; the key that was there stays.
    {
        const FullDisk full(QFile(path).size());
        EXPECT_FALSE(Keychain::set(u"claude"_s, u"sk-a-much-longer-key-than-the-file-can-take"_s));
    }
    EXPECT_EQ(Keychain::get(u"claude"_s), u"sk-new"_s);

    Keychain::useStore(std::make_unique<FileSecretStore>(path + u"/secrets.json"));   // below a file
    EXPECT_FALSE(Keychain::set(u"claude"_s, u"sk"_s)) << "a store that cannot write says so";
    EXPECT_FALSE(Keychain::get(u"claude"_s));
}

// Runs against a real GNOME Keyring in a private D-Bus session: the program starts itself again
// inside dbus-run-session with an unlocked keyring and only this test selected.
TEST(SecretService, StoresReadsAndDeletesInARealKeyring)
{
    if (qEnvironmentVariableIsSet("QUILLET_INSIDE_KEYRING")) {
        ASSERT_TRUE(SecretServiceStore::isAvailable());
        Keychain::useStore(std::make_unique<SecretServiceStore>());
        expectSetGetAndDelete();
        return;
    }
    const QString runner = QStandardPaths::findExecutable(u"dbus-run-session"_s);
    if (runner.isEmpty() || QStandardPaths::findExecutable(u"gnome-keyring-daemon"_s).isEmpty())
        GTEST_SKIP() << "Skipped the real Secret Service: dbus-run-session or gnome-keyring-daemon is missing.";
    QProcess child;
    child.setProcessChannelMode(QProcess::MergedChannels);
    const QString script = u"echo -n pw | gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1 || exit 77; "
                           "exec env QUILLET_INSIDE_KEYRING=1 \"$0\" --gtest_filter=SecretService.*"_s;
    child.start(runner, {u"--"_s, u"sh"_s, u"-c"_s, script, QCoreApplication::applicationFilePath()});
    ASSERT_TRUE(child.waitForFinished(60'000));
    const QByteArray output = child.readAll();
    if (child.exitCode() == 77)
        GTEST_SKIP() << "Skipped the real Secret Service: gnome-keyring-daemon would not start headless.";
    EXPECT_EQ(child.exitCode(), 0) << output.constData();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.constData();
}

TEST(KeychainTest, WithoutASecretServiceKeysGoToAPrivateFileAndTheLogSaysSoOnce)
{
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/quillet-test-bus");
    QFile::remove(Log::path());
    Keychain::useStore(nullptr);
    EXPECT_TRUE(Keychain::set(u"openai"_s, u"sk-file"_s));
    EXPECT_EQ(Keychain::get(u"openai"_s), u"sk-file"_s);
    const QString file = QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation) + u"/secrets.json";
    EXPECT_EQ(QFile::permissions(file), ownerOnly);
    const QList<QByteArray> lines = readFile(Log::path()).split('\n');
    ASSERT_EQ(lines.size(), 2);   // one line and the final newline
    EXPECT_TRUE(lines[0].contains("No Secret Service answers")) << lines[0].constData();
    EXPECT_TRUE(lines[0].endsWith("readable only by you."));
}

} // namespace
