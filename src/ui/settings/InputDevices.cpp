#include "ui/settings/InputDevices.h"

#include <QAudioDevice>
#include <QMediaDevices>

using namespace Qt::StringLiterals;

namespace InputDevices {

QList<Device> list()
{
    QList<Device> inputs{{QString(), u"系统默认"_s}};
    QList<QAudioDevice> monitors;
    for (const QAudioDevice &device : QMediaDevices::audioInputs()) {
        const QString id = QString::fromUtf8(device.id());
        if (isMonitor(id))
            monitors.append(device);
        else
            inputs.append({id, device.description()});
    }
    // One output is "系统声音"; several are told apart by the output's own name.
    for (const QAudioDevice &monitor : monitors) {
        const QString label = monitors.size() == 1 ? u"系统声音"_s : u"系统声音（" + monitor.description() + u"）";
        inputs.append({QString::fromUtf8(monitor.id()), label});
    }
    return inputs;
}

bool isMonitor(const QString &id)
{
    return id.endsWith(u".monitor");
}

} // namespace InputDevices
