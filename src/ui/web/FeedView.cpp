#include "ui/web/FeedView.h"

#include "ui/web/PageView.h"

#include <QJsonArray>

FeedView::FeedView(QObject *parent)
    : QObject(parent)
    , page_(new PageView(QStringLiteral("qrc:/feed.html"), this))
{
    page_->onMessage = [this](const QString &name, const QJsonValue &body) { message(name, body); };
    page_->onReady = [this] { onReady(); };
}

QWebEngineView *FeedView::web() const
{
    return page_->web();
}

bool FeedView::ready() const
{
    return page_->ready();
}

void FeedView::setName(const QString &name)
{
    name_ = name;
}

QString FeedView::name() const
{
    return name_;
}

void FeedView::setTheme(const QString &theme)
{
    page_->setTheme(theme);
}

void FeedView::addNote(const QString &text)
{
    page_->call(QStringLiteral("addNote"), {text});
}

void FeedView::addCard(const QString &kind, const QString &text, const QString &time)
{
    page_->call(QStringLiteral("addCard"), {kind, text, time});
}

void FeedView::setSummary(const QString &text, const QString &stamp, bool final)
{
    // The page takes "1" for the end-of-class summary, not a boolean.
    page_->call(QStringLiteral("setSummary"), {text, stamp, final ? QStringLiteral("1") : QString()});
}

void FeedView::setVocabulary(const QList<QStringList> &terms)
{
    QJsonArray rows;
    for (const QStringList &term : terms)
        rows.append(QJsonArray::fromStringList(term));
    // One argument, the whole list: a braced {rows} would be the list itself, spread.
    page_->call(QStringLiteral("setVocab"), QJsonArray() << rows);
}

void FeedView::addEvent(const QString &id, const ClassEvent &event)
{
    page_->call(QStringLiteral("addEvent"),
                {id, event.title, event.date, event.time.value_or(QString()), event.note.value_or(QString())});
}

void FeedView::markEventAdded(const QString &id)
{
    page_->call(QStringLiteral("markEventAdded"), {id});
}

void FeedView::showYou(const QString &text, const QList<Attachment> &)
{
    page_->call(QStringLiteral("addYou"), {text});
    page_->call(QStringLiteral("showTyping"));
}

void FeedView::addReply(const QString &text)
{
    page_->call(QStringLiteral("addAI"), {name_, text});
}

void FeedView::message(const QString &name, const QJsonValue &body)
{
    if (name == u"calendar" && body.isString())
        onAddEvent(body.toString());
}
