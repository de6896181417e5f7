#include "settings/Config.h"
#include "ui/Panel.h"

#include <QApplication>
#include <QLoggingCategory>

Q_LOGGING_CATEGORY(lcApp, "quillet.app")

int main(int argc, char *argv[])
{
    QCoreApplication::setOrganizationName(QStringLiteral("Quillet"));
    QCoreApplication::setApplicationName(QStringLiteral("Quillet"));
    QApplication application(argc, argv);

    const Config config = Config::load();
    qCInfo(lcApp) << "Lecture language" << config.lecture().id << "answer language" << config.answer().id;

    Panel panel;
    panel.onFeedLoaded = [](bool ok) { qCInfo(lcApp) << (ok ? "Feed page loaded" : "Feed page failed to load"); };
    panel.show();
    return application.exec();
}
