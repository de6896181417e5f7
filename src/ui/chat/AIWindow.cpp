#include "ui/chat/AIWindow.h"

#include "ui/chat/ChatInputBar.h"
#include "ui/chat/FileDrop.h"
#include "ui/common/IconButton.h"
#include "ui/common/ToneLabel.h"
#include "ui/common/WindowFrame.h"
#include "ui/web/FeedView.h"

#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>
#include <QVBoxLayout>
#include <QWebEngineView>

namespace {

const QString frameName = QStringLiteral("QuilletAIWindow");

} // namespace

AIWindow::AIWindow(QWidget *parent)
    : QWidget(parent, Qt::Window)
    , feed_(new FeedView(this))
    , filesRow_(new QWidget)
    , filesLabel_(new ToneLabel({}, ToneLabel::Tone::secondary))
    , input_(new ChatInputBar(QStringLiteral("附上文件（PDF、图片、文本）"), 18))
{
    setWindowTitle(QStringLiteral("AI 问答"));
    setMinimumSize(300, 260);
    resize(380, 500);

    QFont small = filesLabel_->font();
    small.setPixelSize(11);
    filesLabel_->setFont(small);
    auto *clear = new IconButton(QStringLiteral("xmark.circle.fill"), QStringLiteral("去掉附件"), nullptr, 13);
    auto *filesRow = new QHBoxLayout(filesRow_);
    filesRow->setContentsMargins(12, 4, 10, 0);
    filesRow->setSpacing(4);
    filesRow->addWidget(filesLabel_, 1);
    filesRow->addWidget(clear);
    filesRow_->hide();

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 8);
    column->setSpacing(0);
    column->addWidget(feed_->web(), 1);
    column->addWidget(filesRow_);
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setStyleSheet(QStringLiteral("color: palette(mid);"));
    column->addSpacing(4);
    column->addWidget(line);
    auto *inputRow = new QHBoxLayout;
    inputRow->setContentsMargins(10, 6, 10, 0);
    inputRow->addWidget(input_);
    column->addLayout(inputRow);

    auto *drop = new FileDrop(this);
    drop->onDrop = [this](const QStringList &paths) { input_->attach(paths); };
    connect(clear, &QToolButton::clicked, input_, &ChatInputBar::removeFiles);
    input_->onSend = [this](const QString &text, const QList<Attachment> &files) { onSend(text, files); };
    input_->onSlidesFile = [this](const QString &path) { onSlidesFile(path); };
    input_->onNote = [this](const QString &note) { addNote(note); };
    input_->onFilesChanged = [this] { refreshFiles(); };
    feed_->onAddEvent = [this](const QString &id) { onAddEvent(id); };
    input_->setPlaceholder(QStringLiteral("问 AI…"));

    if (!WindowFrame::restore(this, frameName)) {
        if (const QScreen *screen = QGuiApplication::primaryScreen()) {
            const QRect area = screen->availableGeometry();
            move(area.right() - 400, area.center().y() + 250 - height());
        }
    }
}

void AIWindow::setName(const QString &name)
{
    feed_->setName(name);
    input_->setPlaceholder(u"问 " + name + u"…");
}

void AIWindow::toggle()
{
    if (isVisible() && !isMinimized()) {
        hide();
        return;
    }
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
}

void AIWindow::setFloating(bool floating)
{
    WindowFrame::setFloating(this, floating);
}

void AIWindow::addNote(const QString &text) { feed_->addNote(text); }
void AIWindow::addCard(const QString &kind, const QString &text, const QString &time) { feed_->addCard(kind, text, time); }
void AIWindow::setSummary(const QString &text, const QString &stamp, bool final) { feed_->setSummary(text, stamp, final); }
void AIWindow::setVocabulary(const QList<QStringList> &terms) { feed_->setVocabulary(terms); }
void AIWindow::addEvent(const QString &id, const ClassEvent &event) { feed_->addEvent(id, event); }
void AIWindow::markEventAdded(const QString &id) { feed_->markEventAdded(id); }
void AIWindow::showYou(const QString &text, const QList<Attachment> &attachments) { feed_->showYou(text, attachments); }
void AIWindow::addReply(const QString &text) { feed_->addReply(text); }

QString AIWindow::filesText() const
{
    return filesLabel_->text();
}

void AIWindow::refreshFiles()
{
    QStringList names;
    for (const Attachment &attachment : input_->files().attachments())
        names << ChatFiles::label(attachment);
    filesLabel_->setText(names.join(QStringLiteral("  ")));
    filesRow_->setVisible(!names.isEmpty());
}

void AIWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    if (isVisible())
        WindowFrame::save(this, frameName);
}

void AIWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (isVisible())
        WindowFrame::save(this, frameName);
}
