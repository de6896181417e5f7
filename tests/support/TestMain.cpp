// The main of every test program: a home and XDG folders of its own (so no test touches the
// user's settings, keys or documents), a Qt application object (tests create windows and run
// event loops), then GoogleTest.

#include <QApplication>
#include <QDir>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdlib>

int main(int argc, char *argv[])
{
    QTemporaryDir home;
    for (const char *folder : {"config", "share", "state", "cache"})
        QDir(home.path()).mkpath(QString::fromLatin1(folder));
    const QByteArray root = home.path().toLocal8Bit();
    setenv("HOME", root.constData(), 1);
    for (auto [variable, folder] : {std::pair{"XDG_CONFIG_HOME", "/config"}, {"XDG_DATA_HOME", "/share"},
                                    {"XDG_STATE_HOME", "/state"}, {"XDG_CACHE_HOME", "/cache"}})
        setenv(variable, QByteArray(root + folder).constData(), 1);

    // Window tests run on the display xvfb-run gives; without one, on the offscreen platform.
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    QCoreApplication::setOrganizationName(QStringLiteral("QuilletTests"));
    QCoreApplication::setApplicationName(QStringLiteral("QuilletTests"));
    QApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
