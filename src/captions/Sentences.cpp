#include "captions/Sentences.h"

#include "text/Characters.h"
#include "text/Regex.h"

namespace Sentences {

QStringList split(const QString &text)
{
    static const Text::Regex ends(u"([" + closingMarks + u"])\\s*");
    QStringList sentences;
    for (const QString &part : ends.replace(text, QStringLiteral("$1\n")).split(u'\n', Qt::SkipEmptyParts)) {
        const QString sentence = Text::trimmed(part);
        if (!sentence.isEmpty())
            sentences << sentence;
    }
    return sentences;
}

} // namespace Sentences
