#pragma once

// A compiled ICU regular expression. Patterns are written in ICU's dialect; compile each fixed
// pattern once (a function-local static) and share it: matching is safe from any thread.

#include <QList>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>

#include <unicode/uversion.h>

U_NAMESPACE_BEGIN
class RegexPattern;
U_NAMESPACE_END

namespace Text {

class Regex final
{
public:
    enum class Case { Sensitive, Insensitive };

    struct Match
    {
        qsizetype start = 0;   // UTF-16 offset into the searched text
        qsizetype length = 0;
        QString text;
        QStringList groups;    // capture groups 1..n; an unmatched group is an empty string
    };

    explicit Regex(const QString &pattern, Case caseMode = Case::Sensitive);
    ~Regex();
    Regex(Regex &&) noexcept;
    Regex &operator=(Regex &&) noexcept;
    Regex(const Regex &) = delete;
    Regex &operator=(const Regex &) = delete;

    bool isValid() const { return pattern_ != nullptr; }

    QList<Match> all(const QString &text) const;
    std::optional<Match> first(const QString &text) const;
    bool matches(const QString &text) const;
    // Replaces every match; the replacement may name groups as $1, $2, ...
    QString replace(const QString &text, const QString &replacement) const;

private:
    std::unique_ptr<icu::RegexPattern> pattern_;
};

} // namespace Text
