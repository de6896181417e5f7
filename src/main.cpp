#include "platform/Http.h"
#include "platform/QuitSignals.h"
#include "settings/Config.h"
#include "ui/DesktopApp.h"
#include "ui/common/Look.h"
#include "ui/common/Rendering.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QIcon>
#include <QLoggingCategory>
#include <QSessionManager>
#include <QThreadPool>

#include <cstdlib>

Q_LOGGING_CATEGORY(lcApp, "quillet.app")

int main(int argc, char *argv[])
{
    // Wayland lets no window stay above others and no application read another's window: run
    // through XWayland unless the student chose a platform.
    if (qEnvironmentVariableIsSet("WAYLAND_DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "xcb");
    Rendering::choose();
    QElapsedTimer started;
    started.start();
    QCoreApplication::setOrganizationName(QStringLiteral("Quillet"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillet"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QUILLET_VERSION));
    QApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("quillet"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/quillet.svg")));
    // The look first, so that no window is drawn twice.
    Look::apply(Config::load().theme.value_or(QStringLiteral("system")));

    DesktopApp app;
    // However the application ends (the Quit item, the panel closed, a signal, the end of the
    // desktop session), a running class is kept.
    QObject::connect(&application, &QCoreApplication::aboutToQuit, [&app] { app.terminate(); });
    QObject::connect(&application, &QGuiApplication::commitDataRequest, [&app](QSessionManager &) { app.terminate(); });
    const QuitSignals quitSignals([](int) { QCoreApplication::quit(); });
    app.launch();
    qCInfo(lcApp) << "Panel shown";
    app.onPagesReady = [&started] { qCInfo(lcApp) << "Pages ready after" << started.elapsed() << "ms"; };
    const int code = application.exec();
    // A model call may still wait on the network for minutes: give the pool a moment, then leave
    // without tearing down the statics those requests use.
    Http::taskPool().clear();
    if (!Http::taskPool().waitForDone(2000))
        std::quick_exit(code);
    return code;
}
