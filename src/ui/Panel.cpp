#include "ui/Panel.h"

#include <QLabel>
#include <QVBoxLayout>
#include <QWebEngineView>

Panel::Panel(QWidget *parent)
    : QMainWindow(parent)
    , status_(new QLabel(QStringLiteral("未开始")))
    , feed_(new QWebEngineView)
{
    setWindowTitle(QStringLiteral("Quillet"));
    // Statuses carry text from servers and sources: never read as markup.
    status_->setTextFormat(Qt::PlainText);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(status_);
    layout->addWidget(feed_, 1);
    setCentralWidget(content);
    resize(420, 640);

    connect(feed_, &QWebEngineView::loadFinished, this, [this](bool ok) { onFeedLoaded(ok); });
    feed_->load(QUrl(QStringLiteral("qrc:/feed.html")));
}

void Panel::setStatus(const QString &text)
{
    status_->setText(text);
}

QString Panel::status() const
{
    return status_->text();
}
