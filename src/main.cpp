#include "platform/Http.h"
#include "platform/QuitSignals.h"
#include "settings/Config.h"
#include "ui/panel/Panel.h"

#include <QApplication>
#include <QIcon>
#include <QLoggingCategory>
#include <QThreadPool>

#include <cstdlib>

Q_LOGGING_CATEGORY(lcApp, "quillet.app")

int main(int argc, char *argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("Quillet"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillet"));
    QApplication application(argc, argv);
    QGuiApplication::setDesktopFileName(QStringLiteral("quillet"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/quillet.svg")));

    const Config config = Config::load();
    qCInfo(lcApp) << "Lecture language" << config.lecture().id << "answer language" << config.answer().id;

    Panel panel;

    panel.show();
    // The end of the desktop session, `kill` or Ctrl+C quit the ordinary way.
    const QuitSignals quitSignals([](int) { QCoreApplication::quit(); });
    const int code = application.exec();
    // A model call may still wait on the network for minutes: give the pool a moment, then leave
    // without tearing down the statics those requests use.
    Http::taskPool().clear();
    if (!Http::taskPool().waitForDone(2000))
        std::quick_exit(code);
    return code;
}
