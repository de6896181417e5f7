#include "ui/settings/InputDevices.h"

#include "settings/UserDefaults.h"

#include <QAudioDevice>
#include <QMediaDevices>
#include <QProcess>

using namespace Qt::StringLiterals;

namespace InputDevices {

namespace {

// Qt Multimedia leaves the monitors out; the sound server's own list has them. A local call of a
// few milliseconds; none when no server answers within a second.
QStringList monitorIDs()
{
    QProcess pactl;
    pactl.start(u"pactl"_s, {u"list"_s, u"short"_s, u"sources"_s});
    if (!pactl.waitForFinished(1000) || pactl.exitCode() != 0)
        return {};
    QStringList ids;
    // One source a line: index, name, driver, sample format, state, separated by tabs.
    for (const QByteArray &line : pactl.readAllStandardOutput().split('\n')) {
        const QList<QByteArray> columns = line.split('\t');
        if (columns.size() > 1 && isMonitor(QString::fromUtf8(columns[1])))
            ids.append(QString::fromUtf8(columns[1]));
    }
    return ids;
}

} // namespace

QList<Device> list()
{
    QList<Device> inputs{{QString(), u"系统默认"_s}};
    for (const QAudioDevice &device : QMediaDevices::audioInputs()) {
        const QString id = QString::fromUtf8(device.id());
        if (!isMonitor(id) && !id.endsWith(QLatin1StringView(UserDefaults::monitorCopySuffix)))
            inputs.append({id, device.description()});
    }
    // One output is "系统声音"; several are told apart by the output's name.
    const QStringList monitors = monitorIDs();
    for (const QString &id : monitors)
        inputs.append({id, monitors.size() == 1 ? u"系统声音"_s : u"系统声音（" + id.chopped(8) + u"）"});
    return inputs;
}

bool isMonitor(const QString &id)
{
    return id.endsWith(u".monitor");
}

} // namespace InputDevices
