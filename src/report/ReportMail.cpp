#include "report/ReportMail.h"

#include "account/Account.h"
#include "platform/PoolTask.h"
#include "account/Relay.h"
#include "report/MindMapImage.h"
#include "text/LocalDate.h"
#include "text/Regex.h"

#include <QJsonObject>

#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace ReportMail {

namespace {

QString escape(QString text)
{
    text.replace(u"&"_s, u"&amp;"_s);
    text.replace(u"<"_s, u"&lt;"_s);
    text.replace(u">"_s, u"&gt;"_s);
    return text;
}

QString inlined(const QString &text)
{
    static const Text::Regex bold(u"\\*\\*(.+?)\\*\\*"_s);
    return bold.replace(escape(text), u"<b>$1</b>"_s);
}

bool isItem(const QString &line)
{
    return line.startsWith(u"- ") || line.startsWith(u"• ") || line.startsWith(u"* ");
}

// Blanks and tabs only: a line's other spacing is its own.
QString trimmedLine(const QString &line)
{
    qsizetype start = 0;
    qsizetype end = line.size();
    const auto blank = [](QChar c) { return c == u' ' || c == u'\t'; };
    while (start < end && blank(line[start]))
        ++start;
    while (end > start && blank(line[end - 1]))
        --end;
    return line.mid(start, end - start);
}

QString heading(const QString &line)
{
    qsizetype start = 0;
    qsizetype end = line.size();
    const auto mark = [](QChar c) { return c == u'#' || c == u' '; };
    while (start < end && mark(line[start]))
        ++start;
    while (end > start && mark(line[end - 1]))
        --end;
    return u"<h3 style=\"font-size:16px;margin:18px 0 6px\">" + inlined(line.mid(start, end - start)) + u"</h3>";
}

QString eventsHtml(const QList<ClassEvent> &events)
{
    if (events.isEmpty())
        return {};
    QString html = u"<h3 style=\"font-size:16px;margin:22px 0 6px\">📅 重要日期</h3><ul style=\"padding-left:20px\">"_s;
    for (const ClassEvent &event : events) {
        html += u"<li style=\"margin:4px 0\"><b>" + escape(event.date);
        if (event.time)
            html += u' ' + escape(*event.time);
        html += u"</b>\u3000" + escape(event.title);
        if (event.note && !event.note->isEmpty())
            html += u"<br><span style=\"color:#666\">" + escape(*event.note) + u"</span>";
        html += u"</li>";
    }
    return html + u"</ul><p style=\"color:#888;font-size:12px\">在 Quillet 的消息中心里可以一键加入日历。</p>";
}

Outcome deliver(const QUrl &url, const QString &token, const QJsonObject &body)
{
    const auto reply = Http::postJSON(url, {{QString::fromLatin1(Relay::sessionHeader), token}}, body, 40s);
    if (!reply)
        return u"连不上网络。"_s;
    if (reply->status == 200)
        return std::nullopt;
    if (reply->status == 429)
        return u"今天发的邮件太多了。"_s;
    return u"邮件没发出去（" + QString::number(reply->status) + u"）。";
}

} // namespace

QString notesHtml(const QString &notes)
{
    QString html;
    bool inList = false;
    for (const QString &line : notes.split(u'\n')) {
        const QString t = trimmedLine(line);
        const bool item = isItem(t);
        if (!item && inList) {
            html += u"</ul>";
            inList = false;
        }
        if (t.isEmpty())
            continue;
        if (item) {
            if (!inList)
                html += u"<ul style=\"margin:4px 0 10px;padding-left:20px\">";
            inList = true;
            html += u"<li style=\"margin:3px 0\">" + inlined(t.mid(2)) + u"</li>";
        } else if (t.startsWith(u'#')) {
            html += heading(t);
        } else {
            html += u"<p style=\"margin:8px 0\">" + inlined(t) + u"</p>";
        }
    }
    if (inList)
        html += u"</ul>";
    return html;
}

QString html(const QString &title, const QDateTime &date, const ClassReport &report, bool hasImage)
{
    QString image;
    if (hasImage)
        image = u"<h3 style=\"font-size:16px;margin:26px 0 8px\">🧠 本节课思维导图</h3><img src=\"cid:mindmap\" "
                u"alt=\"思维导图\" style=\"width:100%;max-width:100%;border:1px solid #eee;border-radius:10px\">"_s;
    return u"<div style=\"font-family:-apple-system,'PingFang SC',sans-serif;color:#1d1d1f;max-width:640px;"
           u"margin:0 auto;line-height:1.6;font-size:14px\">\n<p style=\"color:#888;font-size:12px;margin:0\">"
           u"Quillet 课堂笔记 · "
           + escape(Text::localDateText(date, Text::WithYear::yes)) + u"</p>\n<h2 style=\"font-size:20px;margin:6px 0 14px\">" + escape(title)
           + u"</h2>\n" + notesHtml(report.notes) + eventsHtml(report.events) + image
           + u"\n<p style=\"color:#aaa;font-size:11px;margin-top:28px\">由 Quillet 根据课堂录音整理，已与文字稿逐条核对。"
             u"可在 Quillet 设置里关闭邮件。</p>\n</div>";
}

QFuture<Outcome> send(const QString &title, const QDateTime &date, const ClassReport &report, QObject *context,
                      std::function<void(const Outcome &)> done)
{
    const auto token = Account::token();
    if (!token)
        return PoolTask::start<Outcome>(context, [] { return Outcome(u"没有登录。"_s); }, std::move(done));
    const auto png = report.mindmap ? MindMapImage::png(*report.mindmap) : std::nullopt;
    QJsonObject body{{u"subject"_s, QString(u"课堂笔记：" + title)}, {u"html"_s, html(title, date, report, png.has_value())}};
    if (png)
        body.insert(u"image"_s, QString::fromLatin1(png->toBase64()));
    return PoolTask::start<Outcome>(context, [url = Relay::url(u"/mail/report"_s), token = *token, body] {
        return deliver(url, token, body);
    }, std::move(done));
}

} // namespace ReportMail
