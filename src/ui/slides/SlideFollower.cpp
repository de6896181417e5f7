#include "ui/slides/SlideFollower.h"

#include "ai/ChatTask.h"
#include "text/Characters.h"
#include "text/Json.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

const QString systemText = u"You match lecture speech to slide pages. Reply with JSON only."_s;

// The page number of a sure reply, as written (1-based); none for anything else.
std::optional<qint64> surePage(const std::optional<QString> &reply)
{
    if (!reply || reply->startsWith(u"（"))
        return std::nullopt;
    const std::optional<QJsonObject> json = Text::Json::objectIn(*reply);
    if (!json)
        return std::nullopt;
    const std::optional<double> page = Text::Json::number(*json, u"page");
    if (!page || !std::isfinite(*page))
        return std::nullopt;
    const double whole = std::trunc(*page);
    if (whole < double(std::numeric_limits<int>::min()) || whole > double(std::numeric_limits<int>::max()))
        return std::nullopt;
    if (Text::Json::boolean(*json, u"sure") != true)
        return std::nullopt;
    return qint64(whole);
}

} // namespace

SlideFollower::SlideFollower(Text::Schedule schedule)
    : schedule_(std::move(schedule))
{
}

SlideFollower::~SlideFollower() = default;

void SlideFollower::setPages(const QStringList &texts)
{
    pages_.clear();
    pages_.reserve(texts.size());
    for (const QString &text : texts)
        pages_.append(cleaned(text));
    lastGuess_.reset();
    suggested_.reset();
}

bool SlideFollower::onlyPictures() const
{
    return std::none_of(pages_.cbegin(), pages_.cend(),
                        [](const QString &page) { return Text::characterCount(page) >= textualPage; });
}

void SlideFollower::heard(const QString &line)
{
    heardLines_.append(line);
    if (heardLines_.size() > keptLines)
        heardLines_.remove(0, heardLines_.size() - keptLines);
    ++newLines_;
    if (!timer_) {
        timer_ = std::make_shared<int>(0);
        schedule();
    }
}

void SlideFollower::stopFollowing()
{
    timer_.reset();
    heardLines_.clear();
    newLines_ = 0;
}

void SlideFollower::setAutoFlip(bool on)
{
    const bool turnedOn = on && !autoFlip_;
    autoFlip_ = on;
    if (turnedOn && suggested_)
        onTurn(*suggested_);
}

bool SlideFollower::pageChanged(int page)
{
    if (!suggested_ || *suggested_ != page)
        return false;
    suggested_.reset();
    return true;
}

QString SlideFollower::cleaned(const QString &text)
{
    QStringList pieces;
    QString piece;
    for (const char32_t codePoint : text.toUcs4()) {
        if (Text::isIn(Text::CharClass::WhitespacesAndNewlines, codePoint)) {
            if (!piece.isEmpty())
                pieces.append(std::exchange(piece, {}));
        } else {
            piece.append(QString::fromUcs4(&codePoint, 1));
        }
    }
    if (!piece.isEmpty())
        pieces.append(piece);
    return pieces.join(u' ');
}

QString SlideFollower::question(const QStringList &pages, const QStringList &heard, int current)
{
    const int count = int(pages.size());
    QStringList offered;
    for (int page = std::max(0, current - pagesBefore); page < std::min(current + pagesAfter + 1, count); ++page)
        offered.append(u'[' + QString::number(page + 1) + u"] "_s + Text::prefix(pages[page], offeredChars));
    return u"Slides of the lecture (page number, then the text on that page):\n<slides>\n"_s
        + offered.join(u'\n')
        + u"\n</slides>\n\nWhat the teacher said in the last minute (live speech recognition, may be in another "
          u"language than the slides):\n<speech>\n"_s
        + heard.join(u'\n') + u"\n</speech>\n\nThe student is on page "_s + QString::number(current + 1)
        + u". Which page is the teacher talking about right now?\nReply with JSON only: {\"page\": number, "
          u"\"sure\": true or false}. \"sure\" only when the speech clearly matches that page."_s;
}

void SlideFollower::schedule()
{
    schedule_(tick, [token = std::weak_ptr<int>(timer_), this] {
        // Only the follower holds the token, so a live token means a live, still following follower.
        if (token.expired())
            return;
        follow();
        schedule();
    });
}

void SlideFollower::follow()
{
    if (busy_ || newLines_ < 2 || pages_.size() < 2 || onlyPictures())
        return;
    std::shared_ptr<const AIProvider> provider = makeProvider();
    if (!provider)
        return;
    newLines_ = 0;
    busy_ = true;
    const QList<Turn> turns{{u"user"_s, question(pages_, heardLines_, currentPage()), {}}};
    ChatTask::start(std::move(provider), systemText, turns, &replies_,
                    [this](const std::optional<QString> &reply) { read(reply); });
}

void SlideFollower::read(const std::optional<QString> &reply)
{
    busy_ = false;
    const std::optional<qint64> page = surePage(reply);
    if (!page || *page < 1 || *page > pages_.size())
        return;
    const int target = int(*page - 1);
    const int current = currentPage();
    if (target == current) {
        lastGuess_ = target;
        return;
    }
    // The next page needs one sure reply; a jump elsewhere needs the same sure reply twice.
    if (target != current + 1 && lastGuess_ != target) {
        lastGuess_ = target;
        return;
    }
    suggested_ = target;
    if (autoFlip_)
        onTurn(target);
    else
        onSuggest(target);
    lastGuess_ = target;
}
