#include "ui/chat/ChatInputBar.h"

#include "ui/common/IconButton.h"
#include "ui/common/Look.h"

#include <QFileDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>

ChatInputBar::ChatInputBar(const QString &paperclipDescription, int sendSize, QWidget *parent)
    : QWidget(parent)
    , field_(new QLineEdit)
    , paperclip_(new IconButton(QStringLiteral("paperclip"), paperclipDescription, nullptr, 15))
    , send_(new IconButton(QStringLiteral("arrow.up.circle.fill"), QStringLiteral("发送"), nullptr, sendSize))
{
    setFixedHeight(38);
    send_->setTint(IconButton::Tint::accent);
    field_->setFrame(false);
    field_->setAttribute(Qt::WA_MacShowFocusRect, false);
    field_->setStyleSheet(QStringLiteral("QLineEdit { background: transparent; border: none; }"));
    QFont font = field_->font();
    font.setPixelSize(13);
    field_->setFont(font);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(8, 2, 6, 2);
    row->setSpacing(4);
    row->addWidget(paperclip_);
    row->addWidget(field_, 1);
    row->addWidget(send_);

    connect(field_, &QLineEdit::returnPressed, this, &ChatInputBar::send);
    connect(send_, &QToolButton::clicked, this, &ChatInputBar::send);
    connect(paperclip_, &QToolButton::clicked, this, &ChatInputBar::pickFiles);
}

void ChatInputBar::attach(const QStringList &paths)
{
    const ChatFiles::Outcome outcome = files_.attach(paths);
    if (outcome.slides)
        onSlidesFile(*outcome.slides);
    for (const QString &note : outcome.notes)
        onNote(note);
    onFilesChanged();
}

void ChatInputBar::send()
{
    auto message = files_.take(field_->text());
    if (!message)
        return;
    field_->clear();
    onFilesChanged();
    onSend(message->text, message->attachments);
}

void ChatInputBar::removeFile(qsizetype index)
{
    files_.remove(index);
    onFilesChanged();
}

void ChatInputBar::removeFiles()
{
    files_.clear();
    onFilesChanged();
}

void ChatInputBar::pickFiles()
{
    auto *dialog = new QFileDialog(window(), QStringLiteral("选择文件"), QString(), ChatFiles::dialogFilter());
    dialog->setFileMode(QFileDialog::ExistingFiles);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QFileDialog::filesSelected, this, &ChatInputBar::attach);
    dialog->open();
}

void ChatInputBar::setPlaceholder(const QString &text)
{
    field_->setPlaceholderText(text);
}

void ChatInputBar::paintEvent(QPaintEvent *)
{
    const bool dark = Look::isDark(palette());
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -2.5);
    // A soft shadow under the field, then the field itself.
    QPainterPath shadow;
    shadow.addRoundedRect(box.translated(0, 1.5), 16, 16);
    painter.fillPath(shadow, QColor(0, 0, 0, dark ? 70 : 22));
    QPainterPath field;
    field.addRoundedRect(box, 16, 16);
    painter.fillPath(field, dark ? QColor(255, 255, 255, 23) : QColor(255, 255, 255, 200));
    QColor stroke = palette().color(QPalette::Mid);
    stroke.setAlphaF(dark ? 0.6f : 0.5f);
    painter.setPen(QPen(stroke, 1));
    painter.drawPath(field);
}
