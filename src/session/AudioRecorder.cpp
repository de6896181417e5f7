#include "session/AudioRecorder.h"

#include "platform/AacWriter.h"
#include "platform/MicHub.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace {

// A writer stalled this long (a hung disk) costs the newest sound, not unbounded memory.
constexpr int queuedSecondsAtMost = 60;

} // namespace

// The hand-off between the audio thread and the writer thread.
class AudioRecorder::Feed final
{
public:
    using Chunks = std::vector<std::vector<float>>;

    void open(int sampleRate)
    {
        std::scoped_lock lock(mutex_);
        sampleRate_ = sampleRate;
        chunks_.clear();
        queued_ = 0;
    }

    void close()
    {
        std::scoped_lock lock(mutex_);
        sampleRate_ = 0;
    }

    // Audio thread: mixes down to mono and queues; buffers at another rate than the file's are
    // dropped (the input changed under a running recording).
    void append(const AudioBuffer &buffer)
    {
        const int channels = buffer.format.channels;
        const qsizetype frames = buffer.frames;
        if (frames <= 0 || !buffer.format.isValid())
            return;
        std::vector<float> mono(size_t(frames), 0.0f);
        const float share = 1.0f / float(channels);
        for (qsizetype frame = 0; frame < frames; ++frame) {
            for (int channel = 0; channel < channels; ++channel)
                mono[size_t(frame)] += buffer.samples[frame * channels + channel] * share;
        }
        std::scoped_lock lock(mutex_);
        if (buffer.format.sampleRate != sampleRate_ || queued_ + frames > qsizetype(queuedSecondsAtMost) * sampleRate_)
            return;
        chunks_.push_back(std::move(mono));
        queued_ += frames;
        ready_.notify_one();
    }

    // Writer thread: waits for sound; empty only once stop is requested.
    Chunks take(std::stop_token stop)
    {
        std::unique_lock lock(mutex_);
        ready_.wait(lock, stop, [this] { return !chunks_.empty(); });
        Chunks taken;
        taken.swap(chunks_);
        queued_ = 0;
        return taken;
    }

private:
    std::mutex mutex_;
    std::condition_variable_any ready_;
    Chunks chunks_;
    qsizetype queued_ = 0;
    int sampleRate_ = 0;   // 0 while not recording
};

AudioRecorder::AudioRecorder(MicHub &hub)
    : hub_(hub)
    , feed_(std::make_shared<Feed>())
{
}

AudioRecorder::~AudioRecorder()
{
    stop();
}

std::optional<QString> AudioRecorder::start(const QString &path)
{
    stop();
    const int sampleRate = hub_.format().sampleRate;
    if (sampleRate <= 0)
        return QStringLiteral("找不到麦克风");
    auto file = std::make_unique<AacWriter>();
    if (!file->open(path, sampleRate, bitRate_))
        return QStringLiteral("无法创建录音文件");

    feed_->open(sampleRate);
    writer_ = std::jthread([feed = feed_, file = std::move(file)](std::stop_token stop) {
        for (;;) {
            const Feed::Chunks chunks = feed->take(stop);
            // A failed write loses that piece only; recording goes on.
            for (const std::vector<float> &chunk : chunks)
                file->write(chunk.data(), qsizetype(chunk.size()));
            if (chunks.empty())
                break;
        }
        file->close();
    });

    try {
        listener_ = hub_.add([feed = std::weak_ptr<Feed>(feed_)](const AudioBuffer &buffer) {
            if (const auto alive = feed.lock())
                alive->append(buffer);
        });
    } catch (const MicHub::Error &error) {
        stopWriting();
        return u"录音启动失败：" + error.message();
    }
    return std::nullopt;
}

void AudioRecorder::stop()
{
    if (listener_)
        hub_.remove(*listener_);
    listener_.reset();
    stopWriting();
}

void AudioRecorder::stopWriting()
{
    feed_->close();
    if (writer_.joinable()) {
        writer_.request_stop();
        writer_.join();
    }
}
