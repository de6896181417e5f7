// A class in a process of its own, for the test that kills it. The microphone is a WAV file
// played as fast as it is taken. Twenty lines are saved at once; once about three seconds of sound
// are on disk in whole fragments the child says "recording" and goes on until it is killed.
//
// Usage: session_recording_child <documents folder> <wav file>

#include "platform/MicHub.h"
#include "platform/WavFileInput.h"
#include "session/LiveSession.h"
#include "session/SessionStore.h"
#include "text/Clock.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTimer>

#include <cstdio>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    if (argc != 3)
        return 2;
    SessionStore::useDocumentsFolder(QString::fromLocal8Bit(argv[1]));
    Text::SystemClock clock;
    MicHub hub(std::make_unique<WavFileInput>(
        QString::fromLocal8Bit(argv[2]), WavFileInput::Pace::AsFastAsPossible, clock));
    LiveSession session(u"English"_s, u"Simplified Chinese"_s, 64'000, hub, clock);
    if (const auto problem = session.startAudio()) {
        std::fprintf(stderr, "%s\n", problem->toLocal8Bit().constData());
        return 1;
    }
    for (int i = 0; i < 20; ++i)
        session.setTranslation(session.addLine(u"line %1"_s.arg(i)), u"第 %1 行"_s.arg(i));
    session.rename(u"Killed mid-class"_s, u"Crash tests"_s);

    QTimer lecture;
    QObject::connect(&lecture, &QTimer::timeout, [&] {
        session.addLine(u"a line while recording"_s);
        if (QFileInfo(session.audioURL()).size() > 24'000) {
            std::printf("recording\n");
            std::fflush(stdout);
        }
    });
    lecture.start(100);
    return QCoreApplication::exec();
}
