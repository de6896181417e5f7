#include "captions/CloudSource.h"

#include "captions/CloudTranscript.h"
#include "captions/CloudUploader.h"
#include "captions/MicSource.h"
#include "captions/SegmentQueue.h"
#include "captions/Segmenter.h"
#include "platform/AudioConverter.h"
#include "platform/Keychain.h"
#include "platform/MicHub.h"

// The audio thread's side: converts each microphone buffer to 16 kHz mono, segments it, and
// queues each cut for the uploader.
class CloudSource::Tap final
{
public:
    Tap(std::unique_ptr<AudioConverter> converter, std::shared_ptr<SegmentQueue> segments,
        std::shared_ptr<Text::Clock> clock)
        : converter_(std::move(converter))
        , segments_(std::move(segments))
        , clock_(std::move(clock))
    {
    }

    void hear(const AudioBuffer &buffer)
    {
        if (auto cut = segmenter_.consume(converter_->convert(buffer)))
            segments_->push({std::move(*cut), clock_->now()});
    }

private:
    const std::unique_ptr<AudioConverter> converter_;
    const std::shared_ptr<SegmentQueue> segments_;
    const std::shared_ptr<Text::Clock> clock_;
    Segmenter segmenter_;
};

CloudSource::CloudSource(Settings settings, MicHub &hub, SpeechRecognizer::Factory recognizers,
                         std::shared_ptr<Text::Clock> clock)
    : settings_(std::move(settings))
    , prompt_(CloudRequest::prompt(settings_.locales))
    , hub_(hub)
    , clock_(std::move(clock))
    , transcript_(std::make_shared<CloudTranscript>())
    , local_(std::make_unique<MicSource>(settings_.locales, hub, std::move(recognizers)))
{
}

CloudSource::~CloudSource()
{
    stop();
}

std::optional<QString> CloudSource::start()
{
    QString key;
    if (!settings_.viaRelay) {
        key = Keychain::get(QStringLiteral("openai")).value_or(QString());
        if (key.isEmpty())
            return QStringLiteral(u"云端识别需要 OpenAI 的 API key：在 设置 › AI 模型分配 里填上");
    }
    const AudioFormat format = hub_.format();
    if (!format.isValid())
        return MicSource::noMicrophone();
    auto converter = AudioConverter::create(format, int(Segmenter::rate));
    if (!converter)
        return QStringLiteral(u"找不到可用的音频格式");

    segments_ = std::make_shared<SegmentQueue>();
    CloudUploader::start(std::make_unique<CloudUploader>(
                             CloudRequest({settings_.model, prompt_, settings_.viaRelay, key, settings_.timeout}),
                             CloudFilter(settings_.locales, prompt_), transcript_),
                         segments_);
    // A local recogniser that won't start costs only the draft.
    local_->start();

    tap_ = std::make_shared<Tap>(std::move(converter), segments_, clock_);
    return MicSource::listen(hub_, tap_, listener_);
}

QString CloudSource::read()
{
    return transcript_->read();
}

QString CloudSource::draft()
{
    const QStringList finals = local_->takeFinals();
    return transcript_->draft(finals, clock_->now(), [this] { return local_->draft(); });
}

void CloudSource::stop()
{
    local_->stop();
    if (listener_) {
        hub_.remove(*listener_);
        listener_.reset();
    }
    if (segments_)
        segments_->finish();
}

std::optional<QString> CloudSource::problem()
{
    return transcript_->problem();
}
