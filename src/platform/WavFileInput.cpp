#include "platform/WavFileInput.h"

#include "platform/WavFile.h"

#include <memory>
#include <vector>

namespace {

using std::chrono::milliseconds;

constexpr int buffersPerSecond = 20;

// Sleeps until `played` frames have had their time since `begin`; false when stopped.
bool keepPace(Text::Clock &clock, Text::Clock::Duration begin, qint64 played, int sampleRate,
              std::stop_token stop)
{
    const auto due = begin + milliseconds(played * 1000 / sampleRate);
    const auto now = clock.elapsed();
    return due <= now ? !stop.stop_requested() : clock.sleep(due - now, stop);
}

} // namespace

WavFileInput::WavFileInput(QString path, Pace pace, Text::Clock &clock)
    : path_(std::move(path))
    , pace_(pace)
    , clock_(clock)
{
}

WavFileInput::~WavFileInput() = default;

AudioFormat WavFileInput::format()
{
    WavFile file(path_);
    return file.open() ? AudioFormat() : file.format();
}

std::optional<QString> WavFileInput::start(Receiver receiver)
{
    // The last run ends before the next begins: listeners see one audio thread at a time.
    player_ = std::jthread();
    auto file = std::make_unique<WavFile>(path_);
    if (auto problem = file->open())
        return problem;
    player_ = std::jthread([this, file = std::move(file), receiver = std::move(receiver)](std::stop_token stop) {
        const AudioFormat format = file->format();
        const qsizetype frames = std::max(1, format.sampleRate / buffersPerSecond);
        std::vector<float> samples;
        auto begin = clock_.elapsed();
        qint64 played = 0;
        bool inFile = true;
        while (!stop.stop_requested()) {
            if (inFile && !file->read(frames, samples)) {
                inFile = false;
                samples.assign(size_t(frames * format.channels), 0.0f);
                // The room's silence keeps real time from here, however fast the file went.
                begin = clock_.elapsed();
                played = 0;
            }
            const qsizetype got = qsizetype(samples.size()) / format.channels;
            receiver(AudioBuffer{samples.data(), got, format, pace_ == Pace::AsFastAsPossible && inFile});
            played += got;
            if ((pace_ == Pace::RealTime || !inFile) && !keepPace(clock_, begin, played, format.sampleRate, stop))
                break;
        }
    });
    return std::nullopt;
}

void WavFileInput::stop()
{
    player_.request_stop();
}
