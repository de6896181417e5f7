#include "captions/MicHub.h"
#include "captions/MicSource.h"
#include "platform/PocketSphinxRecognizer.h"
#include "platform/QtAudioInput.h"
#include "platform/WavFile.h"

#include "QtPrinters.h"
#include "SpeechAudio.h"

#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <thread>

using namespace std::chrono_literals;

namespace {

// A PulseAudio server of the test's own whose only source, the default input, plays what is
// written into its FIFO: 16 kHz mono 16-bit sound.
class VirtualMicrophone final
{
public:
    explicit VirtualMicrophone(const QString &folder)
        : socket_(folder + u"/native")
        , fifo_(folder + u"/microphone")
    {
        server_.setProcessChannelMode(QProcess::MergedChannels);
        // The server ends by itself soon after its last client, should the test die.
        server_.start(QStringLiteral("pulseaudio"),
                      {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--use-pid-file=no"),
                       QStringLiteral("--exit-idle-time=20"), QStringLiteral("--disable-shm=yes"),
                       QStringLiteral("--load=module-native-protocol-unix auth-anonymous=1 socket=") + socket_,
                       QStringLiteral("--load=module-pipe-source source_name=lecture format=s16le rate=16000 channels=1 file=")
                           + fifo_});
    }
    ~VirtualMicrophone()
    {
        server_.kill();
        server_.waitForFinished();
    }
    VirtualMicrophone(const VirtualMicrophone &) = delete;
    VirtualMicrophone &operator=(const VirtualMicrophone &) = delete;
    VirtualMicrophone(VirtualMicrophone &&) = delete;
    VirtualMicrophone &operator=(VirtualMicrophone &&) = delete;

    // Why the server isn't there after five seconds; none when clients can connect.
    std::optional<QString> ready()
    {
        if (!server_.waitForStarted(5'000))
            return u"pulseaudio won't start: " + server_.errorString();
        QElapsedTimer waited;
        waited.start();
        while (!QFile::exists(socket_) || !QFile::exists(fifo_)) {
            if (server_.state() == QProcess::NotRunning || waited.elapsed() > 5'000)
                return u"pulseaudio won't run headless: " + QString::fromLocal8Bit(server_.readAll());
            std::this_thread::sleep_for(20ms);
        }
        return std::nullopt;
    }
    QString server() const { return u"unix:" + socket_; }

    // Speaks the samples into the microphone as fast as the server takes them; returns when done.
    void speak(const std::vector<qint16> &samples)
    {
        QFile fifo(fifo_);
        ASSERT_TRUE(fifo.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        fifo.write(reinterpret_cast<const char *>(samples.data()), qint64(samples.size() * sizeof(qint16)));
    }

private:
    const QString socket_;
    const QString fifo_;
    QProcess server_;
};

std::vector<qint16> samplesOf(const QString &path)
{
    WavFile file(path);
    EXPECT_EQ(file.open(), std::nullopt);
    std::vector<float> block;
    std::vector<qint16> samples;
    while (file.read(4'096, block)) {
        for (const float sample : block)
            samples.push_back(qint16(sample * 32'767.0f));
    }
    return samples;
}

TEST(VirtualMicrophoneTest, TheDefaultInputDeviceIsRecognisedThroughTheHub)
{
    QTemporaryDir folder;
    VirtualMicrophone microphone(folder.path());
    if (const auto reason = microphone.ready())
        GTEST_SKIP() << reason->toStdString();
    qputenv("PULSE_SERVER", microphone.server().toLocal8Bit());
    const auto speech = SpeechAudio::make(folder.path(), {{SpeechAudio::lecture()[1]}});
    ASSERT_TRUE(speech);

    MicHub hub(std::make_unique<QtAudioInput>());
    EXPECT_EQ(hub.format(), (AudioFormat{16'000, 1}));
    MicSource mic({QStringLiteral("en-US")}, hub, PocketSphinxRecognizer::factory());
    ASSERT_EQ(mic.start(), std::nullopt);
    EXPECT_TRUE(hub.running());

    std::jthread speaker([&] { microphone.speak(samplesOf(speech->path)); });
    QStringList lines;
    QElapsedTimer waited;
    waited.start();
    while (lines.isEmpty() && waited.elapsed() < 20'000) {
        lines << mic.read().split(u'\n', Qt::SkipEmptyParts);
        std::this_thread::sleep_for(20ms);
    }
    ASSERT_EQ(lines.size(), 1) << "the sentence came through the sound server and Qt Multimedia";
    EXPECT_TRUE(lines[0].contains(u"chemical energy")) << lines[0].toStdString();
    mic.stop();
    EXPECT_FALSE(hub.running());
    qunsetenv("PULSE_SERVER");
}

} // namespace
