#include "platform/LanguageIdentifier.h"

#include <cstdio>   // the CLD2 header uses FILE without including it
#include <cld2/public/compact_lang_det.h>
#include <cld2/public/encodings.h>

#include <array>

namespace LanguageIdentifier {

namespace {

// The up to three likeliest languages, most of the text first.
QStringList likely(const QString &text)
{
    const QByteArray utf8 = text.toUtf8();
    const CLD2::CLDHints hints{nullptr, "", CLD2::UNKNOWN_ENCODING, CLD2::UNKNOWN_LANGUAGE};
    std::array<CLD2::Language, 3> languages{};
    std::array<int, 3> percents{};
    std::array<double, 3> scores{};
    int textBytes = 0;
    int validBytes = 0;
    bool reliable = false;
    // Best effort: a lecture's lines are short, and a guess beats no answer.
    CLD2::ExtDetectLanguageSummaryCheckUTF8(utf8.constData(), int(utf8.size()), true, &hints,
                                            CLD2::kCLDFlagBestEffort, languages.data(), percents.data(),
                                            scores.data(), nullptr, &textBytes, &reliable, &validBytes);
    QStringList codes;
    for (const CLD2::Language language : languages) {
        if (language == CLD2::UNKNOWN_LANGUAGE || language == CLD2::TG_UNKNOWN_LANGUAGE)
            continue;
        const QString code = QString::fromLatin1(CLD2::LanguageCode(language));
        codes << (code == u"zh" ? QStringLiteral("zh-Hans") : code);
    }
    return codes;
}

} // namespace

QString languageCode(const QString &locale)
{
    return QString(locale).replace(u'_', u'-').section(u'-', 0, 0).toLower();
}

std::optional<QString> dominant(const QString &text)
{
    const QStringList codes = likely(text);
    if (codes.isEmpty())
        return std::nullopt;
    return codes.front();
}

std::optional<QString> dominant(const QString &text, const QStringList &candidates)
{
    QStringList wanted;
    for (const QString &candidate : candidates)
        wanted << languageCode(candidate);
    for (const QString &code : likely(text)) {
        if (wanted.contains(languageCode(code)))
            return code;
    }
    return std::nullopt;
}

} // namespace LanguageIdentifier
