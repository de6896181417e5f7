#include "ui/web/PageView.h"

#include "ui/web/PageBridge.h"

#include <QJsonDocument>
#include <QUrl>
#include <QWebChannel>
#include <QWebEnginePage>
#include <QWebEngineView>

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
    web_->load(QUrl(url));
}

// The view is handed to a layout, which may own it; a view nobody took goes with this object.
PageView::~PageView()
{
    if (web_ && !web_->parent())
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
    return name + QStringLiteral("(...") + QString::fromUtf8(QJsonDocument(args).toJson(QJsonDocument::Compact)) + u')';
}

void PageView::call(const QString &name, const QJsonArray &args)
{
    const QString text = script(name, args);
    if (ready_)
        web_->page()->runJavaScript(text);
    else
        pending_.append(text);
}

void PageView::loaded(bool ok)
{
    if (!ok || ready_)
        return;
    ready_ = true;
    for (const QString &text : std::as_const(pending_))
        web_->page()->runJavaScript(text);
    pending_.clear();
}
