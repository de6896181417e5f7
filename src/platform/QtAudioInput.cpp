#include "platform/QtAudioInput.h"

#include "settings/UserDefaults.h"

#include <QAudioDevice>
#include <QAudioSource>
#include <QDeadlineTimer>
#include <QMediaDevices>
#include <QProcess>

#include <optional>
#include <vector>

// Receives what the device pushes and hands it on as float frames.
class QtAudioInput::Sink final : public QIODevice
{
public:
    Sink(QAudioFormat format, Receiver receiver)
        : format_(format)
        , receiver_(std::move(receiver))
    {
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }

    qint64 writeData(const char *data, qint64 length) override
    {
        const int frameBytes = format_.bytesPerFrame();
        const int sampleBytes = format_.bytesPerSample();
        // A push may end inside a frame; the rest waits for the next one.
        pending_.append(data, length);
        const qsizetype frames = pending_.size() / frameBytes;
        samples_.resize(size_t(frames * format_.channelCount()));
        for (size_t i = 0; i < samples_.size(); ++i)
            samples_[i] = format_.normalizedSampleValue(pending_.constData() + qsizetype(i) * sampleBytes);
        pending_.remove(0, frames * frameBytes);
        if (frames > 0)
            receiver_(AudioBuffer{samples_.data(), frames, {format_.sampleRate(), format_.channelCount()}});
        return length;
    }

private:
    const QAudioFormat format_;
    const Receiver receiver_;
    QByteArray pending_;
    std::vector<float> samples_;
};

namespace {

using namespace std::chrono_literals;

std::optional<QAudioDevice> listed(const QByteArray &id)
{
    for (const QAudioDevice &device : QMediaDevices::audioInputs()) {
        if (device.id() == id)
            return device;
    }
    return std::nullopt;
}

// The source that repeats a monitor, made in the sound server the first time it is chosen; it
// stays there, found again by name, until the sound server restarts. None when the server won't.
std::optional<QAudioDevice> monitorCopy(const QByteArray &monitor)
{
    const QByteArray name = monitor.chopped(int(sizeof ".monitor") - 1) + UserDefaults::monitorCopySuffix;
    if (auto device = listed(name))
        return device;
    QProcess pactl;
    pactl.start(QStringLiteral("pactl"),
                {QStringLiteral("load-module"), QStringLiteral("module-remap-source"),
                 u"master=" + QString::fromUtf8(monitor), u"source_name=" + QString::fromUtf8(name),
                 QStringLiteral("source_properties=device.description=系统声音（Quillet）")});
    if (!pactl.waitForFinished(3000) || pactl.exitCode() != 0)
        return std::nullopt;
    // Qt Multimedia hears of the new source from the server a moment later.
    QDeadlineTimer deadline(2s);
    while (!deadline.hasExpired()) {
        if (auto device = listed(name))
            return device;
        QThread::msleep(20);
    }
    return std::nullopt;
}

// The input the student chose in the settings, or the default one when none is chosen or it is
// not there now.
QAudioDevice chosenDevice(const QByteArray &id)
{
    if (id.isEmpty())
        return QMediaDevices::defaultAudioInput();
    if (auto device = listed(id))
        return *device;
    if (id.endsWith(".monitor")) {
        if (auto device = monitorCopy(id))
            return *device;
    }
    return QMediaDevices::defaultAudioInput();
}

QByteArray chosenID()
{
    return UserDefaults::text(UserDefaults::micDevice).toUtf8();
}

} // namespace

QtAudioInput::QtAudioInput()
    : context_(std::make_unique<QObject>())
{
    thread_.setObjectName(QStringLiteral("audio input"));
    context_->moveToThread(&thread_);
    thread_.start(QThread::TimeCriticalPriority);
}

QtAudioInput::~QtAudioInput()
{
    onAudioThread([this] {
        close();
        // The context's last event ran; it may go from the audio thread.
        context_->moveToThread(nullptr);
    });
    thread_.quit();
    thread_.wait();
}

AudioFormat QtAudioInput::format()
{
    AudioFormat format;
    const QByteArray id = chosenID();
    onAudioThread([&] {
        const QAudioDevice device = chosenDevice(id);
        if (!device.isNull())
            format = {device.preferredFormat().sampleRate(), device.preferredFormat().channelCount()};
    });
    return format;
}

std::optional<QString> QtAudioInput::start(Receiver receiver)
{
    std::optional<QString> problem;
    const QByteArray id = chosenID();
    onAudioThread([&] {
        close();
        const QAudioDevice device = chosenDevice(id);
        if (device.isNull()) {
            problem = QStringLiteral("找不到音频输入设备");
            return;
        }
        QAudioFormat format = device.preferredFormat();
        format.setSampleFormat(QAudioFormat::Float);
        if (!device.isFormatSupported(format))
            format.setSampleFormat(QAudioFormat::Int16);
        sink_ = std::make_unique<Sink>(format, std::move(receiver));
        sink_->open(QIODevice::WriteOnly);
        source_ = std::make_unique<QAudioSource>(device, format);
        source_->start(sink_.get());
        if (source_->error() != QAudio::NoError || source_->state() == QAudio::StoppedState) {
            problem = u"无法打开音频输入设备“" + device.description() + u"”";
            close();
        }
    });
    return problem;
}

void QtAudioInput::stop()
{
    // Queued even on the audio thread: a receiver that stops the input is still inside the sink.
    QMetaObject::invokeMethod(context_.get(), [this] { close(); }, Qt::QueuedConnection);
}

void QtAudioInput::onAudioThread(const std::function<void()> &work)
{
    if (QThread::currentThread() == &thread_)
        work();
    else
        QMetaObject::invokeMethod(context_.get(), work, Qt::BlockingQueuedConnection);
}

void QtAudioInput::close()
{
    if (source_)
        source_->stop();
    source_.reset();
    sink_.reset();
}
