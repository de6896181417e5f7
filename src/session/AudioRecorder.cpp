#include "session/AudioRecorder.h"

#include "platform/AacWriter.h"
#include "platform/MicHub.h"
#include "session/SessionText.h"

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

    // Writer thread: what the student should hear of the file, absent while all is well.
    void setProblem(std::optional<QString> problem)
    {
        std::scoped_lock lock(mutex_);
        problem_ = std::move(problem);
    }

    std::optional<QString> problem()
    {
        std::scoped_lock lock(mutex_);
        return problem_;
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
    std::optional<QString> problem_;
};

namespace {

// How the file is doing, in the student's words; absent while the disk takes everything.
std::optional<QString> fileProblem(const AacWriter &file, double stoppedAt)
{
    if (file.failed())
        return u"磁盘已满：录音从 " + SessionText::clock(stoppedAt) + u" 起没能保存，之前的部分可以正常播放";
    if (file.backlog() > 0)
        return QStringLiteral("磁盘空间不足：录音先存在内存里，腾出空间后会自动写入");
    return std::nullopt;
}

} // namespace

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
    feed_->setProblem(std::nullopt);
    writer_ = std::jthread([feed = feed_, file = std::move(file), sampleRate](std::stop_token stop) {
        qint64 frames = 0;
        for (;;) {
            const Feed::Chunks chunks = feed->take(stop);
            for (const std::vector<float> &chunk : chunks) {
                if (file->write(chunk.data(), qsizetype(chunk.size())))
                    frames += qsizetype(chunk.size());
            }
            feed->setProblem(fileProblem(*file, double(frames) / sampleRate));
            if (chunks.empty())
                break;
        }
        const bool failedBefore = file->failed();
        if (!file->close() && !failedBefore)
            feed->setProblem(QStringLiteral("录音的结尾没能写进文件，之前的部分可以正常播放"));
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

std::optional<QString> AudioRecorder::problem() const
{
    return feed_->problem();
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
