#pragma once

// The sound inputs the student can caption and record from, as the sound server offers them now:
// the system's default first, then the microphones and line inputs, then the monitor of each
// sound output ("系统声音"), which hears what the computer plays, such as an online lecture.
// Main thread only; asks the sound server with a short local call.

#include <QList>
#include <QString>

namespace InputDevices {

struct Device
{
    QString id;      // the device id stored in the user default "mic.device"; empty for the default
    QString label;
};

QList<Device> list();
// PulseAudio and PipeWire name the monitor of an output "<output>.monitor".
bool isMonitor(const QString &id);

} // namespace InputDevices
