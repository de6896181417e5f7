// A class in a process of its own, for the test that kills it: records five seconds of tone at
// once, saves twenty lines, says "recording" once those seconds are on disk, and then goes on
// recording in real time until it is killed.
//
// Usage: session_recording_child <documents folder>

#include "session/LiveSession.h"
#include "session/SessionStore.h"
#include "text/Clock.h"

#include "FakeMicrophone.h"
#include "Tone.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 2)
        return 2;
    SessionStore::useDocumentsFolder(QString::fromLocal8Bit(argv[1]));
    Text::SystemClock clock;
    FakeMicrophone microphone;
    LiveSession session(QStringLiteral("English"), QStringLiteral("Simplified Chinese"), 64'000,
                        microphone.microphone(), clock);
    if (const auto problem = session.startAudio()) {
        std::fprintf(stderr, "%s\n", problem->toLocal8Bit().constData());
        return 1;
    }

    microphone.play(tone(48'000, 5.0));
    for (int i = 0; i < 20; ++i)
        session.setTranslation(session.addLine(QStringLiteral("line %1").arg(i)), QStringLiteral("第 %1 行").arg(i));
    session.rename(QStringLiteral("Killed mid-class"), QStringLiteral("Crash tests"));

    const std::vector<float> tenth = tone(48'000, 0.1);
    bool announced = false;
    QTimer audio;
    QObject::connect(&audio, &QTimer::timeout, [&] {
        microphone.play(tenth);
        session.addLine(QStringLiteral("a line while recording"));
        // About three seconds of sound in whole fragments.
        if (!announced && QFileInfo(session.audioURL()).size() > 24'000) {
            std::printf("recording\n");
            std::fflush(stdout);
            announced = true;
        }
    });
    audio.start(100);
    return QCoreApplication::exec();
}
