#pragma once

// The caption source of the high-accuracy mode: the microphone's sound is cut into segments of a
// few seconds at natural pauses, and each segment goes to a cloud transcription service (OpenAI's,
// the relay's, or a compatible server of the user's). The cloud answers seconds late, so a local
// MicSource runs beside it: what it hears shows as the draft until the cloud's text for that
// stretch arrives. Only cloud text becomes final lines.
//
// Threads: start(), read(), draft() and problem() come from the engine's thread, stop() after
// start() has returned. The hub's audio thread converts and segments each buffer and hands a
// finished segment to the uploader without waiting; one task on the network pool uploads the
// segments strictly one at a time and outlives the source only to end. The source's lock (in its
// transcript) is taken before the local source's, never the other way. The hub must outlive it.

#include "captions/CaptionSource.h"
#include "captions/CloudRequest.h"
#include "platform/SpeechRecognizer.h"
#include "text/Clock.h"

#include <QStringList>
#include <QUuid>

#include <memory>
#include <optional>

class CloudTranscript;
class MicHub;
class MicSource;
class SegmentQueue;

class CloudSource final : public CaptionSource
{
public:
    struct Settings
    {
        QString model;         // the transcription model
        QStringList locales;   // the lecture's locale, then the extra ones
        bool viaRelay = false;
        std::chrono::milliseconds timeout = CloudRequest::defaultTimeout;   // per upload
    };

    // recognizers serve the local source of the draft.
    CloudSource(Settings settings, MicHub &hub, SpeechRecognizer::Factory recognizers,
                std::shared_ptr<Text::Clock> clock = std::make_shared<Text::SystemClock>());
    ~CloudSource() override;   // stops
    CloudSource(const CloudSource &) = delete;
    CloudSource &operator=(const CloudSource &) = delete;
    CloudSource(CloudSource &&) = delete;
    CloudSource &operator=(CloudSource &&) = delete;

    std::optional<QString> start() override;
    QString read() override;
    QString draft() override;
    // Stops listening; what is still being collected is not sent, what is queued still is.
    void stop() override;
    std::optional<QString> problem() override;

private:
    class Tap;

    const Settings settings_;
    const QString prompt_;
    MicHub &hub_;
    const std::shared_ptr<Text::Clock> clock_;
    const std::shared_ptr<CloudTranscript> transcript_;   // the uploader holds it weakly
    const std::unique_ptr<MicSource> local_;
    std::shared_ptr<SegmentQueue> segments_;
    std::shared_ptr<Tap> tap_;   // the audio thread holds it weakly
    std::optional<QUuid> listener_;
};
