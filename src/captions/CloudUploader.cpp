#include "captions/CloudUploader.h"

#include "captions/SegmentQueue.h"
#include "platform/Log.h"
#include "text/Json.h"

#include <QStringDecoder>
#include <QThreadPool>

namespace {

constexpr qsizetype loggedBytes = 300;

// The start of a body for the log; nothing when those bytes aren't valid UTF-8.
QString logged(const QByteArray &body)
{
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(body.left(loggedBytes));
    return decoder.hasError() ? QString() : text;
}

} // namespace

CloudUploader::CloudUploader(CloudRequest request, CloudFilter filter, std::weak_ptr<CloudTranscript> transcript)
    : request_(std::move(request))
    , filter_(std::move(filter))
    , transcript_(std::move(transcript))
{
}

void CloudUploader::start(std::unique_ptr<CloudUploader> uploader, std::shared_ptr<SegmentQueue> queue)
{
    Http::taskPool().start([uploader = std::shared_ptr<CloudUploader>(std::move(uploader)),
                            queue = std::move(queue)] { uploader->run(*queue); });
}

void CloudUploader::run(SegmentQueue &queue)
{
    while (auto segment = queue.next()) {
        if (transcript_.expired())
            return;
        Log::write(segment->cut.describe());
        if (segment->cut.sent)
            upload(segment->cut.samples, segment->time);
    }
}

void CloudUploader::upload(std::span<const qint16> samples, const QDateTime &cut)
{
    const auto response = Http::send(request_.make(samples));
    const auto transcript = transcript_.lock();
    if (!transcript)
        return;
    if (!response) {
        transcript->fail(cannotConnect());
        return;
    }
    Log::write(QStringLiteral("HTTP %1: ").arg(response->status) + logged(response->body));
    const auto json = Text::Json::parseObject(response->body);
    const auto text = json ? Text::Json::string(*json, u"text") : std::nullopt;
    if (response->status != 200 || !text) {
        transcript->fail(failure(response->status, request_.settings().viaRelay));
        return;
    }
    const QStringList sentences = filter_.kept(*text);
    Log::write(QStringLiteral("kept %1: ").arg(sentences.size()) + sentences.join(QStringLiteral(" / ")));
    transcript->merge(sentences, cut);
}

QString CloudUploader::cannotConnect()
{
    return QStringLiteral(u"云端识别连不上网络，稍后会自动重试");
}

QString CloudUploader::failure(int status, bool viaRelay)
{
    if (status == 429)
        return QStringLiteral(u"OpenAI 额度不足或请求太频繁");
    if (status == 401 && viaRelay)
        return QStringLiteral(u"Quillet 的 AI 服务暂时不可用");
    if (status == 401)
        return QStringLiteral(u"OpenAI 的 API key 无效：请在 设置 › AI 模型分配 里重新填写");
    return QStringLiteral(u"云端识别出错（%1）").arg(status);
}
