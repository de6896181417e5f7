#include "ui/web/PageView.h"

#include "ui/common/Look.h"
#include "ui/web/PageBridge.h"

#include <QEvent>
#include <QJsonDocument>
#include <QMetaObject>
#include <QUrl>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

PageView::PageView(const QString &url, QObject *parent)
    : QObject(parent)
    , web_(new QWebEngineView)
    , bridge_(new PageBridge(this))
{
    // The owning window paints what lies behind the page (the subtitle bar's translucent surface).
    web_->page()->setBackgroundColor(Qt::transparent);
    auto *channel = new QWebChannel(web_->page());
    channel->registerObject(QStringLiteral("native"), bridge_);
    web_->page()->setWebChannel(channel);
    bridge_->onMessage = [this](const QString &name, const QJsonValue &body) { onMessage(name, body); };
    connect(web_, &QWebEngineView::loadFinished, this, &PageView::loaded);
    web_->installEventFilter(this);
    web_->load(QUrl(url));
    followLook();
}

// The view is handed to a layout, which may own it; a view nobody took goes with this object.
PageView::~PageView()
{
    if (!web_)
        return;
    web_->removeEventFilter(this);
    if (!web_->parent())
        delete web_.data();
}

QWebEngineView *PageView::web() const
{
    return web_;
}

bool PageView::ready() const
{
    return ready_;
}

QString PageView::script(const QString &name, const QJsonArray &args)
{
    return name + u"(..."_s + QString::fromUtf8(QJsonDocument(args).toJson(QJsonDocument::Compact)) + u')';
}

void PageView::call(const QString &name, const QJsonArray &args)
{
    pending_.append(script(name, args));
    if (ready_ && pending_.size() == 1)
        QMetaObject::invokeMethod(this, &PageView::flush, Qt::QueuedConnection);
}

void PageView::setTheme(const QString &theme)
{
    followsLook_ = theme != u"light" && theme != u"dark";
    if (followsLook_)
        followLook();
    else
        call(QStringLiteral("setTheme"), {theme});
}

void PageView::followLook()
{
    call(QStringLiteral("setTheme"), {Look::isDark(web_->palette()) ? u"dark"_s : u"light"_s});
}

bool PageView::eventFilter(QObject *watched, QEvent *event)
{
    // Only the view is watched; its identity isn't checked, since the view may be mid-destruction.
    if (event->type() == QEvent::PaletteChange && followsLook_)
        followLook();
    return QObject::eventFilter(watched, event);
}

void PageView::loaded(bool ok)
{
    if (!ok || ready_)
        return;
    ready_ = true;
    flush();
    onReady();
}

// Every call waiting since the last turn of the event loop goes in one evaluation: a page round
// trip per call would fall behind a class's rows. Each keeps its own statement, so one failing
// call doesn't stop the next.
void PageView::flush()
{
    if (pending_.isEmpty() || !web_)
        return;
    QString batch;
    for (const QString &text : std::as_const(pending_))
        batch += u"try { "_s + text + u" } catch (e) { console.error(e); }\n"_s;
    pending_.clear();
    web_->page()->runJavaScript(batch);
}
