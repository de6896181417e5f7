#include "Tone.h"

#include <cmath>
#include <numbers>

std::vector<float> tone(int sampleRate, double seconds, int channels)
{
    const auto frames = size_t(sampleRate * seconds);
    std::vector<float> samples(frames * size_t(channels));
    for (size_t frame = 0; frame < frames; ++frame) {
        const auto value = float(0.3 * std::sin(2 * std::numbers::pi * 440.0 * double(frame) / sampleRate));
        for (int channel = 0; channel < channels; ++channel)
            samples[frame * size_t(channels) + size_t(channel)] = value;
    }
    return samples;
}
