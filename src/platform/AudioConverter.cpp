#include "platform/AudioConverter.h"

extern "C" {
#include <libavutil/channel_layout.h>
#include <libswresample/swresample.h>
}

std::unique_ptr<AudioConverter> AudioConverter::create(AudioFormat from, int toSampleRate)
{
    if (!from.isValid() || toSampleRate <= 0)
        return nullptr;
    AVChannelLayout input{};
    av_channel_layout_default(&input, from.channels);
    AVChannelLayout mono = AV_CHANNEL_LAYOUT_MONO;
    SwrContext *context = nullptr;
    const int made = swr_alloc_set_opts2(&context, &mono, AV_SAMPLE_FMT_S16, toSampleRate, &input,
                                         AV_SAMPLE_FMT_FLT, from.sampleRate, 0, nullptr);
    av_channel_layout_uninit(&input);
    if (made < 0 || swr_init(context) < 0) {
        swr_free(&context);
        return nullptr;
    }
    return std::unique_ptr<AudioConverter>(new AudioConverter(context, from));
}

AudioConverter::AudioConverter(SwrContext *context, AudioFormat from)
    : context_(context)
    , from_(from)
{
}

AudioConverter::~AudioConverter()
{
    swr_free(&context_);
}

std::span<const qint16> AudioConverter::convert(const AudioBuffer &buffer)
{
    if (buffer.format != from_ || buffer.frames <= 0)
        return {};
    const int capacity = swr_get_out_samples(context_, int(buffer.frames));
    if (capacity <= 0)
        return {};
    if (converted_.size() < size_t(capacity))
        converted_.resize(size_t(capacity));
    auto *out = reinterpret_cast<uint8_t *>(converted_.data());
    const auto *in = reinterpret_cast<const uint8_t *>(buffer.samples);
    const int made = swr_convert(context_, &out, capacity, &in, int(buffer.frames));
    return made > 0 ? std::span<const qint16>(converted_.data(), size_t(made)) : std::span<const qint16>();
}
