#include "captions/Segmenter.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double minimumThreshold = 0.0008;
constexpr double floorFactor = 1.8;
constexpr double floorCreep = 1.002;
constexpr double floorStep = 0.00001;
constexpr double pauseCutSeconds = 2.5;
constexpr double pauseSeconds = 0.5;
constexpr double longestSeconds = 8.0;
constexpr double sendLevel = 0.003;
constexpr double sendSpeech = 0.3;
constexpr double silenceSeconds = 4.0;
constexpr double silenceLevel = 0.002;
// Room for the longest segment plus one more buffer, so appending doesn't reallocate.
constexpr qsizetype capacity = qsizetype(Segmenter::rate * 9);

double rootMeanSquare(std::span<const qint16> samples)
{
    double sum = 0;
    for (const qint16 sample : samples)
        sum += double(sample) * double(sample);
    return std::sqrt(sum / double(samples.size())) / 32'768.0;
}

} // namespace

QString Segmenter::Cut::describe() const
{
    return QString::asprintf("segment %.1fs, speech %.1fs, level %.4f, floor %.4f → %s", seconds, speech,
                             level, floor, sent ? "sent" : "skipped");
}

Segmenter::Segmenter()
{
    buffer_.reserve(size_t(capacity));
}

std::optional<Segmenter::Cut> Segmenter::consume(std::span<const qint16> samples)
{
    if (samples.empty())
        return std::nullopt;
    const auto n = qsizetype(samples.size());
    const double level = rootMeanSquare(samples);
    // The floor drops at once to a quieter buffer and creeps up slowly under steady noise.
    floor_ = level < floor_ ? level : floor_ * floorCreep + floorStep;
    const double threshold = std::max(floor_ * floorFactor, minimumThreshold);

    buffer_.insert(buffer_.end(), samples.begin(), samples.end());
    energy_ += level * level * double(n);
    if (level < threshold) {
        quietFrames_ += n;
    } else {
        quietFrames_ = 0;
        loudFrames_ += n;
    }

    const double seconds = pending();
    const double quiet = double(quietFrames_) / rate;
    if ((seconds >= pauseCutSeconds && quiet >= pauseSeconds) || seconds >= longestSeconds)
        return cut();
    if (seconds > silenceSeconds && loudFrames_ == 0
        && std::sqrt(energy_ / double(buffer_.size())) < silenceLevel)
        reset();
    return std::nullopt;
}

Segmenter::Cut Segmenter::cut()
{
    Cut made;
    made.seconds = pending();
    made.speech = double(loudFrames_) / rate;
    made.level = std::sqrt(energy_ / double(buffer_.size()));
    made.floor = floor_;
    made.sent = made.level >= sendLevel || made.speech >= sendSpeech;
    if (made.sent) {
        made.samples = std::move(buffer_);
        buffer_ = {};
        buffer_.reserve(size_t(capacity));
    }
    reset();
    return made;
}

void Segmenter::reset()
{
    buffer_.clear();
    quietFrames_ = 0;
    loudFrames_ = 0;
    energy_ = 0;
}
