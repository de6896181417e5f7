#include "engine/Alternatives.h"

#include <QHash>
#include <QList>

#include <algorithm>

namespace {

// The positions of the pattern's own "(", ")" and "|" (escaped ones and those inside bracket
// classes left out), each with the depth of groups it stands in.
struct Mark
{
    qsizetype at;
    QChar mark;
    int depth;
};

QList<Mark> marks(const QString &pattern)
{
    QList<Mark> found;
    int depth = 0;
    bool inClass = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == u'\\')
            ++i;
        else if (inClass)
            inClass = c != u']';
        else if (c == u'[')
            inClass = true;
        else if (c == u'(')
            found << Mark{i, c, depth++};
        else if (c == u')')
            found << Mark{i, c, --depth};
        else if (c == u'|')
            found << Mark{i, c, depth};
    }
    return found;
}

// A plain group around the whole pattern is left out: it changes nothing about where a match is.
QString withoutEnclosingGroup(const QString &pattern)
{
    if (!pattern.startsWith(u'(') || pattern.startsWith(u"(?"))
        return pattern;
    for (const Mark &mark : marks(pattern)) {
        if (mark.mark == u')' && mark.depth == 0)
            return mark.at == pattern.size() - 1 ? pattern.mid(1, pattern.size() - 2) : pattern;
    }
    return pattern;
}

QStringList topLevelAlternatives(const QString &pattern)
{
    QStringList parts;
    qsizetype start = 0;
    for (const Mark &mark : marks(pattern)) {
        if (mark.mark == u'|' && mark.depth == 0) {
            parts << pattern.mid(start, mark.at - start);
            start = mark.at + 1;
        }
    }
    parts << pattern.mid(start);
    return parts;
}

// Which alternatives share a pattern: those that begin with the same letter, and all that begin
// with a letter outside ASCII. ICU passes over every position that can't begin one of a pattern's
// alternatives, and at the others it tries only a few. Any grouping gives the same answer.
QString groupOf(const QString &part)
{
    const QChar first = part.isEmpty() ? QChar() : part[0];
    if (first.unicode() > 0x7f)
        return QStringLiteral("outside ASCII");
    return first.isLetter() ? QString(first.toLower()) : part;
}

QStringList grouped(const QStringList &alternatives)
{
    QStringList groups;
    QHash<QString, qsizetype> indexOfGroup;
    for (const QString &part : alternatives) {
        const QString group = groupOf(part);
        if (const auto found = indexOfGroup.constFind(group); found != indexOfGroup.cend()) {
            groups[*found] += u'|' + part;
        } else {
            indexOfGroup.insert(group, groups.size());
            groups << part;
        }
    }
    return groups;
}

} // namespace

Alternatives::Alternatives(const QString &pattern, Text::Regex::Case caseMode)
{
    for (const QString &part : grouped(topLevelAlternatives(withoutEnclosingGroup(pattern))))
        parts_.emplace_back(part, caseMode);
}

bool Alternatives::matches(const QString &text) const
{
    return std::any_of(parts_.cbegin(), parts_.cend(), [&](const Text::Regex &part) { return part.matches(text); });
}
