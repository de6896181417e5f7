#include "ui/web/TranscriptView.h"

#include "ui/web/PageView.h"

#include <QJsonArray>
#include <QRegularExpression>

namespace {

QString decimal(int id)
{
    return QString::number(id);
}

} // namespace

TranscriptView::TranscriptView(const QString &look, double fontSize, QObject *parent)
    : QObject(parent)
    , page_(new PageView(QStringLiteral("qrc:/subtitle.html"), this))
{
    page_->onMessage = [this](const QString &name, const QJsonValue &body) { message(name, body); };
    page_->onReady = [this] { onReady(); };
    setLook(look);
    setFontSize(fontSize);
}

QWebEngineView *TranscriptView::web() const
{
    return page_->web();
}

bool TranscriptView::ready() const
{
    return page_->ready();
}

void TranscriptView::setLook(const QString &look)
{
    page_->call(QStringLiteral("setLook"), {look});
}

void TranscriptView::setFontSize(double size)
{
    page_->call(QStringLiteral("setFontSize"), {size});
}

void TranscriptView::setTheme(const QString &theme)
{
    page_->setTheme(theme);
}

void TranscriptView::setFont(const QString &family)
{
    page_->call(QStringLiteral("setFont"), {family});
}

void TranscriptView::setColors(const QString &translation, const QString &original)
{
    page_->call(QStringLiteral("setColors"), {translation, original});
}

void TranscriptView::addLine(int id, const QString &text)
{
    page_->call(QStringLiteral("addLine"), {decimal(id), text});
}

void TranscriptView::setText(int id, const QString &text)
{
    page_->call(QStringLiteral("setText"), {decimal(id), text});
}

void TranscriptView::setTranslation(int id, const QString &text)
{
    page_->call(QStringLiteral("setTranslation"), {decimal(id), text});
}

void TranscriptView::setDrafts(const Drafts &drafts)
{
    QJsonArray pairs;
    for (const auto &[text, translation] : drafts)
        pairs.append(QJsonArray{text, translation});
    // One argument, the whole list: a braced {pairs} would be the list itself, spread.
    page_->call(QStringLiteral("setDrafts"), QJsonArray() << pairs);
}

void TranscriptView::clear(const QString &hint)
{
    page_->call(QStringLiteral("clearAll"), {hint});
}

void TranscriptView::setSeekable(bool on)
{
    page_->call(QStringLiteral("setSeekable"), {on});
}

void TranscriptView::setActive(int id)
{
    page_->call(QStringLiteral("setActive"), {decimal(id)});
}

std::optional<int> TranscriptView::lineId(const QJsonValue &body)
{
    QString text;
    if (body.isString())
        text = body.toString();
    else if (body.isDouble())
        text = QString::number(body.toDouble(), 'g', 17);
    else
        return std::nullopt;
    static const QRegularExpression integer(QStringLiteral("\\A[+-]?[0-9]+\\z"));
    if (!integer.match(text).hasMatch())
        return std::nullopt;
    bool ok = false;
    const int id = text.toInt(&ok, 10);
    if (!ok)
        return std::nullopt;
    return id;
}

void TranscriptView::message(const QString &name, const QJsonValue &body)
{
    if (name != u"line")
        return;
    if (const auto id = lineId(body))
        onLineClick(*id);
}
