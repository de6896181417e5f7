#include "ui/settings/SettingsWindow.h"

#include "ui/account/AccountLook.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QVariantAnimation>
#include <QVBoxLayout>

namespace {

constexpr int margin = 20;
constexpr int resizeMilliseconds = 150;

} // namespace

SettingsWindow::SettingsWindow(QWidget *parent)
    : QDialog(parent)
    , pages_(new QStackedWidget(this))
    , done_(new QPushButton(QStringLiteral("完成"), this))
    , resizing_(new QVariantAnimation(this))
{
    resizing_->setDuration(resizeMilliseconds);
    resizing_->setEasingCurve(QEasingCurve::OutCubic);
    connect(resizing_, &QVariantAnimation::valueChanged, this, [this](const QVariant &value) { setFixedHeight(value.toInt()); });
    setWindowTitle(QStringLiteral("设置"));
    setObjectName(QStringLiteral("settingsWindow"));
    // The body text of the account windows, so the product's windows read alike.
    setFont(AccountLook::font(13));
    if (parent)
        setWindowModality(Qt::WindowModal);
    done_->setObjectName(QStringLiteral("doneButton"));
    done_->setDefault(true);
    done_->setMinimumWidth(88);
    connect(done_, &QPushButton::clicked, this, [this] { onDone(); });

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin - 4, margin, margin - 4);
    column->setSpacing(14);
    column->setSizeConstraint(QLayout::SetNoConstraint);
    column->addWidget(pages_);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(done_);
    column->addLayout(buttons);
    setFixedWidth(contentWidth);
}

void SettingsWindow::addPage(QWidget *page)
{
    pages_->addWidget(page);
}

void SettingsWindow::showPage(QWidget *page)
{
    pages_->setCurrentWidget(page);
    fit();
}

QWidget *SettingsWindow::currentPage() const
{
    return pages_->currentWidget();
}

void SettingsWindow::fit()
{
    QWidget *page = pages_->currentWidget();
    if (!page)
        return;
    // A stack is as tall as its tallest page; the window follows the page on show instead.
    const int inner = contentWidth - 2 * margin;
    page->layout()->activate();
    const int pageHeight = page->hasHeightForWidth() ? page->heightForWidth(inner) : page->sizeHint().height();
    pages_->setFixedHeight(pageHeight);
    layout()->activate();
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(contentWidth)
                                                     : layout()->totalSizeHint().height();
    // A resize keeps the window's position, so the top edge stays where it was.
    resizing_->stop();
    if (!isVisible() || height == this->height()) {
        setFixedHeight(height);
        return;
    }
    resizing_->setStartValue(this->height());
    resizing_->setEndValue(height);
    resizing_->start();
}

void SettingsWindow::reject()
{
    onCancel();
}
