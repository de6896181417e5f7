// The sound input chosen in the sheet is the one the microphone input opens. A PulseAudio server of
// the test's own offers a silent pipe source (the default input) and a speaker sink whose monitor
// hears what is played (Qt Multimedia lists no monitor: the input reaches it through a copy). Qt Multimedia stays with the first sound server a program meets, so the
// checks run in a child process started inside that server.

#include "ui/settings/SettingsSheet.h"

#include "AudioFiles.h"
#include "QtPrinters.h"
#include "SheetFixture.h"

#include "platform/Keychain.h"
#include "platform/QtAudioInput.h"
#include "settings/UserDefaults.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <cmath>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto inside = "QUILLET_INSIDE_SOUND_SERVER";

// The loudest sample the input delivers while a tone plays on the speakers.
float loudestWhilePlaying(const QString &folder)
{
    const QString tone = soxFile(folder, u"tone.wav"_s, {u"-n"_s}, {u"-r48000"_s, u"-c2"_s}, {u"synth"_s, u"3"_s, u"sine"_s, u"440"_s});
    EXPECT_FALSE(tone.isEmpty());
    std::atomic<float> loudest = 0;
    QtAudioInput input;
    EXPECT_EQ(input.start([&](const AudioBuffer &buffer) {
        for (qsizetype i = 0; i < buffer.frames * buffer.format.channels; ++i)
            loudest = std::max(loudest.load(), std::abs(buffer.samples[i]));
    }), std::nullopt);
    QProcess player;
    player.start(u"paplay"_s, {u"-d"_s, u"speakers"_s, tone});
    const bool heard = QTest::qWaitFor([&] { return loudest > 0.3f; }, 10'000);
    EXPECT_TRUE(heard);
    input.stop();
    player.kill();
    player.waitForFinished();
    return loudest;
}

void checkInsideTheServer()
{
    QTemporaryDir folder;
    Keychain::useStore(std::make_unique<RefusingStore>());
    Keychain::set(u"claude"_s, u"sk"_s);
    SettingsSheet sheet;
    sheet.load(Config());
    auto *devices = sheet.window()->findChild<QComboBox *>(u"devicePopup"_s);
    ASSERT_TRUE(devices);
    const int monitor = devices->findText(u"系统声音"_s);
    QStringList seen;
    for (int i = 0; i < devices->count(); ++i)
        seen << devices->itemText(i) + u'=' + devices->itemData(i).toString();
    ASSERT_GE(monitor, 0) << "the speakers' monitor is offered: " << seen.join(u", ").toStdString();
    EXPECT_EQ(devices->itemData(monitor).toString(), u"speakers.monitor"_s);
    EXPECT_GE(devices->findData(u"lecture"_s), 0);
    EXPECT_EQ(devices->currentIndex(), 0) << "nothing chosen: the default input";

    devices->setCurrentIndex(monitor);
    sheet.window()->findChild<QAbstractButton *>(u"doneButton"_s)->click();
    EXPECT_EQ(UserDefaults::text(UserDefaults::micDevice), u"speakers.monitor"_s);
    EXPECT_EQ(QtAudioInput().format(), (AudioFormat{48'000, 2})) << "the monitor has the speakers' format";
    EXPECT_GT(loudestWhilePlaying(folder.path()), 0.3f) << "what the speakers play is heard";

    // A device that isn't there now, or none, gives the default input: the silent pipe.
    for (const QString &id : {u"gone.monitor"_s, QString()}) {
        UserDefaults::setValue(UserDefaults::micDevice, id);
        EXPECT_EQ(QtAudioInput().format(), (AudioFormat{16'000, 1})) << id.toStdString();
    }
    UserDefaults::setValue(UserDefaults::micDevice, u"gone.monitor"_s);
    sheet.load(Config());
    EXPECT_EQ(devices->currentText(), u"gone.monitor（未连接）"_s) << "an unplugged choice stays until changed";
    EXPECT_EQ(devices->findText(u"系统声音（Quillet）"_s), -1) << "the server's copy of the monitor isn't offered twice";
    EXPECT_GE(devices->findText(u"系统声音"_s), 0);
}

TEST(InputDevice, TheSpeakersMonitorCanBeChosenAndIsWhatTheMicrophoneHears)
{
    if (qEnvironmentVariableIsSet(inside)) {
        checkInsideTheServer();
        return;
    }
    QTemporaryDir folder;
    const QString socket = folder.filePath(u"native"_s);
    QProcess server;
    server.setProcessChannelMode(QProcess::MergedChannels);
    // The server also ends by itself soon after its last client, should the test die.
    server.start(u"pulseaudio"_s,
                 {u"-n"_s, u"--daemonize=no"_s, u"--use-pid-file=no"_s, u"--exit-idle-time=20"_s, u"--disable-shm=yes"_s,
                  u"--load=module-native-protocol-unix auth-anonymous=1 socket="_s + socket,
                  u"--load=module-pipe-source source_name=lecture format=s16le rate=16000 channels=1 file="_s
                      + folder.filePath(u"microphone"_s),
                  u"--load=module-null-sink sink_name=speakers rate=48000 channels=2"_s});
    const auto cleanUp = qScopeGuard([&] {
        server.kill();
        server.waitForFinished();
    });
    if (!server.waitForStarted(5'000))
        GTEST_SKIP() << "pulseaudio won't start: " << server.errorString();
    QElapsedTimer waited;
    waited.start();
    while (!QFile::exists(socket)) {
        if (server.state() == QProcess::NotRunning || waited.elapsed() > 5'000)
            GTEST_SKIP() << "pulseaudio won't run headless: " << QString::fromLocal8Bit(server.readAll());
        std::this_thread::sleep_for(20ms);
    }
    QProcess child;
    child.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"PULSE_SERVER"_s, u"unix:"_s + socket);
    environment.insert(QString::fromLatin1(inside), u"1"_s);
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {u"--gtest_filter=InputDevice.*"_s});
    ASSERT_TRUE(child.waitForFinished(60'000));
    const QByteArray output = child.readAll();
    EXPECT_EQ(child.exitCode(), 0) << output.constData();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.constData();
}

} // namespace
