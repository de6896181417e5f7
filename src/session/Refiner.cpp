#include "session/Refiner.h"

#include "captions/MicSource.h"
#include "captions/Sentences.h"
#include "text/Characters.h"

#include <algorithm>
#include <memory>
#include <thread>
#include <vector>

namespace Refiner {

namespace {

struct TimedWord
{
    QString text;   // trimmed of punctuation and whitespace
    double t = 0;
};

QString bare(const QString &word)
{
    return Text::trimmed(word, Text::CharClass::PunctuationAndWhitespaces);
}

QList<TimedWord> timedWords(const FileRecognizer::Result &result)
{
    QList<TimedWord> words;
    for (const FileRecognizer::Run &run : result.runs) {
        if (run.time && !Text::trimmed(run.piece.text, Text::CharClass::Whitespaces).isEmpty())
            words.append({bare(run.piece.text), run.time->start});
    }
    return words;
}

// The time of the first timed word from the cursor on that opens the sentence as its first one or
// two words do; the cursor moves behind it. Without one, the time of the word at the cursor, or the
// result's start past the end, and the cursor stays: words that cleaning removed simply don't match.
double timeOf(const QString &sentence, const QList<TimedWord> &words, qsizetype &cursor, double resultStart)
{
    const double provisional = cursor < words.size() ? words[cursor].t : resultStart;
    QStringList heads;
    for (const QString &part : sentence.split(u' ', Qt::SkipEmptyParts).mid(0, 2))
        heads << bare(part);
    if (heads.isEmpty())
        return provisional;
    for (qsizetype i = cursor; i < words.size(); ++i) {
        const bool second = heads.size() < 2 || i + 1 >= words.size() || words[i + 1].text == heads[1];
        if (words[i].text == heads[0] && second) {
            cursor = i + 1;
            return words[i].t;
        }
    }
    return provisional;
}

QList<Line> recognised(FileRecognizer &recognizer, const Entry &entry, bool primaryIsLatin, std::stop_token stop)
{
    QList<Line> lines;
    while (const auto result = recognizer.next(stop))
        lines << linesOf(*result, entry, primaryIsLatin);
    return lines;
}

} // namespace

QList<Line> linesOf(const FileRecognizer::Result &result, const Entry &entry, bool primaryIsLatin)
{
    QList<SpeechRecognizer::Piece> pieces;
    for (const FileRecognizer::Run &run : result.runs)
        pieces << run.piece;
    const QList<TimedWord> words = timedWords(result);
    qsizetype cursor = 0;
    QList<Line> lines;
    for (const QString &sentence : Sentences::split(MicSource::cleaned(pieces, entry.primary, primaryIsLatin))) {
        if (entry.primary || MicSource::fits(sentence, entry.locale))
            lines.append({timeOf(sentence, words, cursor, result.range.start), sentence});
    }
    return lines;
}

std::optional<QList<Line>> transcribe(const QString &path, const QStringList &locales,
                                      const FileRecognizer::Factory &recognizers, std::stop_token stop)
{
    std::vector<Entry> entries;
    for (qsizetype i = 0; i < locales.size(); ++i) {
        if (recognizers.supports(locales[i]))
            entries.push_back({locales[i], i == 0});
    }
    std::vector<std::unique_ptr<FileRecognizer>> made;
    for (const Entry &entry : entries) {
        auto recognizer = recognizers.make(path, entry.locale);
        if (!std::holds_alternative<std::unique_ptr<FileRecognizer>>(recognizer))
            return std::nullopt;
        made.push_back(std::move(std::get<std::unique_ptr<FileRecognizer>>(recognizer)));
    }
    if (made.empty())
        return std::nullopt;

    const bool primaryIsLatin = MicSource::primaryIsLatin(locales.front());
    std::vector<QList<Line>> heard(made.size());
    {
        std::vector<std::jthread> workers;
        for (size_t i = 0; i < made.size(); ++i) {
            workers.emplace_back([&, i] { heard[i] = recognised(*made[i], entries[i], primaryIsLatin, stop); });
        }
    }
    if (stop.stop_requested())
        return std::nullopt;
    QList<Line> lines;
    for (const QList<Line> &language : heard)
        lines << language;
    std::stable_sort(lines.begin(), lines.end(), [](const Line &a, const Line &b) { return a.t < b.t; });
    return lines;
}

} // namespace Refiner
