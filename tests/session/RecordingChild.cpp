// A class in a process of its own, for the test that kills it. The microphone is a WAV file
// played as fast as it is taken, then the silence of a quiet room in real time. Twenty lines are
// saved at once; once the file's sound is on disk the child says "recording" and goes on
// recording and taking lines until it is killed.
//
// Usage: session_recording_child <documents folder> <wav file>

#include "captions/MicHub.h"
#include "platform/WavFileInput.h"
#include "session/LiveSession.h"
#include "session/SessionStore.h"
#include "text/Clock.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return 2;
    SessionStore::useDocumentsFolder(QString::fromLocal8Bit(argv[1]));
    Text::SystemClock clock;
    MicHub hub(std::make_unique<WavFileInput>(QString::fromLocal8Bit(argv[2]), WavFileInput::Pace::AsFastAsPossible,
                                              clock));
    LiveSession session(QStringLiteral("English"), QStringLiteral("Simplified Chinese"), 64'000, hub, clock);
    if (const auto problem = session.startAudio()) {
        std::fprintf(stderr, "%s\n", problem->toLocal8Bit().constData());
        return 1;
    }
    for (int i = 0; i < 20; ++i)
        session.setTranslation(session.addLine(QStringLiteral("line %1").arg(i)), QStringLiteral("第 %1 行").arg(i));
    session.rename(QStringLiteral("Killed mid-class"), QStringLiteral("Crash tests"));

    bool announced = false;
    QTimer lecture;
    QObject::connect(&lecture, &QTimer::timeout, [&] {
        session.addLine(QStringLiteral("a line while recording"));
        // About three seconds of sound in whole fragments.
        if (!announced && QFileInfo(session.audioURL()).size() > 24'000) {
            std::printf("recording\n");
            std::fflush(stdout);
            announced = true;
        }
    });
    lecture.start(100);
    return QCoreApplication::exec();
}
