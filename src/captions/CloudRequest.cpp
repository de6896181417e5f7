#include "captions/CloudRequest.h"

#include "account/Relay.h"
#include "ai/ChatCall.h"
#include "platform/LanguageIdentifier.h"
#include "settings/UserDefaults.h"

#include <QLocale>
#include <QUuid>
#include <QtEndian>

namespace {

QString sample(const QString &key)
{
    static const QHash<QString, QString> samples{
        {QStringLiteral("ko"), QStringLiteral(u"한국어 대학 강의입니다. 가끔 영어 단어나 문장이 섞입니다.")},
        {QStringLiteral("en"), QStringLiteral(u"A university lecture in English.")},
        {QStringLiteral("zh"), QStringLiteral(u"这是一堂中文大学课程。")},
        {QStringLiteral("ja"), QStringLiteral(u"日本語の大学の講義です。")},
        {QStringLiteral("fr"), QStringLiteral(u"Un cours universitaire en français.")},
        {QStringLiteral("de"), QStringLiteral(u"Eine Universitätsvorlesung auf Deutsch.")},
    };
    return samples.value(key);
}

// The English name of a locale's language; empty when the code names no language.
QString englishName(const QString &locale)
{
    const QLocale::Language language = QLocale::codeToLanguage(LanguageIdentifier::languageCode(locale));
    if (language == QLocale::AnyLanguage || language == QLocale::C)
        return {};
    return QLocale::languageToString(language);
}

void append16(QByteArray &bytes, quint16 value)
{
    char little[2];
    qToLittleEndian(value, little);
    bytes.append(little, 2);
}

void append32(QByteArray &bytes, quint32 value)
{
    char little[4];
    qToLittleEndian(value, little);
    bytes.append(little, 4);
}

QByteArray field(const QByteArray &boundary, const QByteArray &name, const QByteArray &value)
{
    return "--" + boundary + "\r\nContent-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + "\r\n";
}

} // namespace

CloudRequest::CloudRequest(Settings settings)
    : settings_(std::move(settings))
{
}

QString CloudRequest::prompt(const QStringList &locales)
{
    const QString text = sample(LanguageIdentifier::languageCode(locales.value(0)));
    if (text.isEmpty())
        return QStringLiteral("University lecture.");
    QStringList names;
    for (const QString &locale : locales.mid(1)) {
        const QString name = englishName(locale);
        if (!name.isEmpty())
            names << name;
    }
    if (names.isEmpty())
        return text;
    return text + QStringLiteral(" (+ ") + names.join(QStringLiteral(", ")) + u')';
}

QByteArray CloudRequest::wav(std::span<const qint16> samples, int rate)
{
    const auto dataBytes = quint32(samples.size() * 2);
    QByteArray bytes;
    bytes.reserve(qsizetype(44 + dataBytes));
    bytes.append("RIFF");
    append32(bytes, dataBytes + 36);
    bytes.append("WAVEfmt ");
    append32(bytes, 16);
    append16(bytes, 1);   // PCM
    append16(bytes, 1);   // one channel
    append32(bytes, quint32(rate));
    append32(bytes, quint32(rate) * 2);
    append16(bytes, 2);   // bytes per frame
    append16(bytes, 16);  // bits per sample
    bytes.append("data");
    append32(bytes, dataBytes);
    for (const qint16 sample : samples)
        append16(bytes, quint16(sample));
    return bytes;
}

Http::Request CloudRequest::make(std::span<const qint16> samples) const
{
    const QByteArray boundary = "Quillet-" + QUuid::createUuid().toByteArray(QUuid::WithoutBraces);
    Http::Headers headers;
    if (settings_.viaRelay)
        headers = Relay::headers();
    else
        headers.insert(QStringLiteral("Authorization"), QStringLiteral("Bearer ") + settings_.key);
    headers.insert(QStringLiteral("Content-Type"),
                   QStringLiteral("multipart/form-data; boundary=") + QString::fromLatin1(boundary));
    return {"POST", endpoint(), headers, body(samples, boundary), settings_.timeout};
}

QByteArray CloudRequest::body(std::span<const qint16> samples, const QByteArray &boundary) const
{
    // No language field: the languages reach the recogniser only through the prompt.
    return field(boundary, "model", settings_.model.toUtf8()) + field(boundary, "response_format", "json")
        + field(boundary, "prompt", settings_.prompt.toUtf8()) + "--" + boundary
        + "\r\nContent-Disposition: form-data; name=\"file\"; filename=\"audio.wav\"\r\nContent-Type: audio/wav\r\n\r\n"
        + wav(samples) + "\r\n--" + boundary + "--\r\n";
}

QUrl CloudRequest::endpoint() const
{
    if (settings_.viaRelay)
        return Relay::url(QStringLiteral("/openai/v1/audio/transcriptions"));
    return QUrl(UserDefaults::address(UserDefaults::speechURL, QStringLiteral("https://api.openai.com"))
                + QStringLiteral("/v1/audio/transcriptions"));
}
