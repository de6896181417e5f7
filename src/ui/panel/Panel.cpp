#include "ui/panel/Panel.h"

#include "settings/UserDefaults.h"
#include "ui/art/AvatarButton.h"
#include "ui/art/PixelCat.h"
#include "ui/chat/ChatInputBar.h"
#include "ui/chat/FileDrop.h"
#include "ui/common/IconButton.h"
#include "ui/common/ToneLabel.h"
#include "ui/common/WindowFrame.h"
#include "ui/panel/LanguageRow.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/StatusLine.h"
#include "ui/web/FeedView.h"
#include "ui/web/TranscriptView.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSettings>
#include <QSplitter>
#include <QVBoxLayout>
#include <QWebEngineView>

namespace {

const QString frameName = QStringLiteral("MarrowlinePanel");
const QString splitKey = QStringLiteral("NSSplitView Subview Frames MarrowlineSplit");
constexpr int inputHeight = 38;
constexpr int dividerMargin = 90;

QCheckBox *aiSwitch(const QString &title, const QString &tip)
{
    auto *box = new QCheckBox(title);
    box->setToolTip(tip);
    QFont font = box->font();
    font.setPixelSize(11);
    box->setFont(font);
    return box;
}

} // namespace

Panel::Panel(QWidget *parent)
    : QMainWindow(parent)
    , header_(new PanelHeader)
    , languages_(new LanguageRow)
    , transcript_(new TranscriptView(QStringLiteral("panel"), 15, this))
    , feed_(new FeedView(this))
    , split_(new QSplitter(Qt::Vertical))
    , chips_(new QWidget)
    , chipRow_(new QHBoxLayout(chips_))
    , inputBox_(new QWidget)
    , input_(new ChatInputBar(QStringLiteral("上传文件（PDF、图片、文本）"), 20))
{
    setWindowTitle(QStringLiteral("Quillet"));
    setMinimumSize(320, 460);
    resize(400, 680);

    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 8);
    column->setSpacing(0);
    column->addWidget(header_);
    auto *line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    line->setStyleSheet(QStringLiteral("color: palette(mid);"));
    column->addWidget(line);
    column->addWidget(languages_);

    transcript_->web()->setMinimumSize(dividerMargin, dividerMargin);
    split_->addWidget(transcript_->web());
    split_->addWidget(buildAIBox());
    split_->setChildrenCollapsible(false);
    split_->setHandleWidth(3);
    column->addWidget(split_, 1);

    chipRow_->setContentsMargins(14, 6, 14, 0);
    chipRow_->setSpacing(6);
    chipRow_->addStretch(1);
    chips_->hide();
    column->addWidget(chips_);

    auto *inputRow = new QHBoxLayout(inputBox_);
    inputRow->setContentsMargins(12, 6, 12, 0);
    inputRow->addWidget(input_);
    column->addWidget(inputBox_);
    setCentralWidget(content);

    auto *drop = new FileDrop(content);
    drop->onDrop = [this](const QStringList &paths) { input_->attach(paths); };
    setTitle(QStringLiteral("AI"));
    setPinned(false);
    setAccount(std::nullopt);
    connectControls();
    if (!WindowFrame::restore(this, frameName)) {
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            move(screen->availableGeometry().center() - rect().center());
    }
}

Panel::~Panel() = default;

QWidget *Panel::buildAIBox()
{
    aiBox_ = new QWidget;
    aiBox_->setMinimumSize(dividerMargin, dividerMargin);
    answerSwitch_ = aiSwitch(QStringLiteral("回答提问"), QStringLiteral("有人提问时，给一句可以直接说的回答"));
    examSwitch_ = aiSwitch(QStringLiteral("考试重点"), QStringLiteral("提到考试、作业、截止日期时记下来"));
    keySwitch_ = aiSwitch(QStringLiteral("实时总结"), QStringLiteral("一边上课一边更新整节课的总结；下课时生成完整笔记"));
    vocabSwitch_ = aiSwitch(QStringLiteral("专业词汇"), QStringLiteral("把课上出现的难的专业术语记进单词表（日常词不收）"));
    auto *heading = new ToneLabel(QStringLiteral("AI 要点"), ToneLabel::Tone::secondary);
    QFont font = heading->font();
    font.setPixelSize(11);
    font.setWeight(QFont::DemiBold);
    heading->setFont(font);

    auto *row = new QHBoxLayout;
    row->setContentsMargins(14, 6, 14, 0);
    row->setSpacing(8);
    row->addWidget(heading);
    for (QCheckBox *box : {answerSwitch_, examSwitch_, keySwitch_, vocabSwitch_}) {
        row->addWidget(box);
        connect(box, &QCheckBox::clicked, this, [this] { switchesChanged(); });
    }
    row->addStretch(1);
    auto *column = new QVBoxLayout(aiBox_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    column->addLayout(row);
    column->addWidget(feed_->web(), 1);
    return aiBox_;
}

void Panel::connectControls()
{
    PanelHeader &top = *header_;
    connect(top.record(), &QPushButton::clicked, this, [this] { onRecord(); });
    connect(top.library(), &QToolButton::clicked, this, [this] { onLibrary(); });
    connect(top.subtitles(), &QToolButton::clicked, this, [this] { onToggleSubtitles(); });
    connect(top.chat(), &QToolButton::clicked, this, [this] { onToggleAI(); });
    connect(top.slides(), &QToolButton::clicked, this, [this] { onSlides(); });
    connect(top.merge(), &QToolButton::clicked, this, [this] { onToggleMerge(); });
    connect(top.pin(), &QToolButton::clicked, this, [this] { onTogglePin(); });
    connect(top.settings(), &QToolButton::clicked, this, [this] { onSettings(); });
    connect(top.avatar(), &QAbstractButton::clicked, this, [this] { onAccount(); });
    languages_->onShow = [this](const QString &show) {
        UserDefaults::setValue(UserDefaults::panelShow, show);
        applyShow(show);
    };
    languages_->onLanguages = [this](const QString &lecture, const QString &answer) { onLanguages(lecture, answer); };
    languages_->onExtras = [this](const QStringList &extras) { onExtras(extras); };
    feed_->onAddEvent = [this](const QString &id) { onAddEvent(id); };
    input_->onSend = [this](const QString &text, const QList<Attachment> &files) { onSend(text, files); };
    input_->onSlidesFile = [this](const QString &path) { onSlidesFile(path); };
    input_->onNote = [this](const QString &note) { addNote(note); };
    input_->onFilesChanged = [this] { refreshChips(); };
    connect(split_, &QSplitter::splitterMoved, this, [this] { QSettings().setValue(splitKey, split_->saveState()); });
}

TranscriptSurface &Panel::transcript()
{
    return *transcript_;
}

void Panel::setTitle(const QString &title)
{
    feed_->setName(title);
    input_->setPlaceholder(u"问 " + title + u"… 可以拖文件进来");
}

void Panel::setStatus(const QString &text)
{
    header_->status()->setStatus(text);
}

void Panel::setRecording(bool recording, const QString &time)
{
    header_->setRecording(recording, time);
}

void Panel::setLanguages(const QString &lecture, const QString &answer, const QStringList &extras)
{
    languages_->setLanguages(lecture, answer, extras);
}

void Panel::setSwitches(const Switches &switches)
{
    answerSwitch_->setChecked(switches.questions);
    examSwitch_->setChecked(switches.exams);
    keySwitch_->setChecked(switches.keyPoints);
    vocabSwitch_->setChecked(switches.vocabulary);
}

void Panel::switchesChanged()
{
    onSwitches({answerSwitch_->isChecked(), examSwitch_->isChecked(), keySwitch_->isChecked(),
                vocabSwitch_->isChecked()});
}

void Panel::setUnread(bool unread)
{
    header_->avatar()->setBadge(unread);
}

void Panel::setAccount(const std::optional<QString> &email)
{
    AvatarButton &avatar = *header_->avatar();
    if (email && !email->isEmpty()) {
        avatar.setLetter(email->left(1).toUpper());
        avatar.setToolTip(u"账户：" + *email);
    } else {
        avatar.setLetter(std::nullopt);
        avatar.setToolTip(QStringLiteral("登录"));
    }
    avatar.setCat(PixelCat::index(email));
}

void Panel::setPinned(bool pinned)
{
    header_->setPinned(pinned);
    WindowFrame::setFloating(this, pinned);
}

void Panel::setMerged(bool merged)
{
    header_->setMerged(merged);
}

void Panel::setLayout(const QString &layout)
{
    const Qt::Orientation wanted = layout == u"horizontal" ? Qt::Horizontal : Qt::Vertical;
    if (split_->orientation() == wanted)
        return;
    split_->setOrientation(wanted);
    if (wanted == Qt::Horizontal && width() < 720)
        resize(760, height());
    divideAt(wanted == Qt::Horizontal ? 0.55 : 0.6);
}

void Panel::applyShow(const QString &show)
{
    languages_->selectShow(show);
    transcript_->web()->setVisible(show != u"ai");
    const bool translationOnly = show == u"translation";
    aiBox_->setVisible(!translationOnly);
    inputBox_->setVisible(!translationOnly);
    inputBox_->setMaximumHeight(translationOnly ? 0 : QWIDGETSIZE_MAX);
    chips_->setVisible(!translationOnly && !input_->files().attachments().isEmpty());
    if (show == u"both" || (show != u"translation" && show != u"ai"))
        divideAt(split_->orientation() == Qt::Horizontal ? 0.55 : 0.6);
}

void Panel::placeDivider()
{
    const QVariant saved = QSettings().value(splitKey);
    if (saved.isValid() && split_->restoreState(saved.toByteArray()))
        return;
    divideAt(0.6);
}

void Panel::divideAt(double share)
{
    centralWidget()->layout()->activate();
    const int total = split_->orientation() == Qt::Horizontal ? split_->width() : split_->height();
    const int first = std::clamp(int(total * share), dividerMargin, std::max(dividerMargin, total - dividerMargin));
    split_->setSizes({first, std::max(0, total - first)});
}

void Panel::setBackground(const QString &)
{
    // Linux desktops offer no behind-window blur to every application: both kinds are the opaque
    // soft background of the look.
}

void Panel::setTranscriptFont(const QString &fontID, double size)
{
    transcript_->setFont(fontID);
    transcript_->setFontSize(size);
}

void Panel::bringToFront()
{
    if (QMainWindow::isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
}

void Panel::orderOut()
{
    hide();
}

bool Panel::isMinimized() const
{
    return QMainWindow::isMinimized();
}

QRect Panel::frame() const
{
    return frameGeometry();
}

void Panel::addNote(const QString &text)
{
    feed_->addNote(text);
}

void Panel::addCard(const QString &kind, const QString &text, const QString &time)
{
    feed_->addCard(kind, text, time);
    if (kind == u"考试重点") {
        ++alerts_;
        QApplication::alert(this);
    }
}

void Panel::setSummary(const QString &text, const QString &stamp, bool final)
{
    feed_->setSummary(text, stamp, final);
}

void Panel::setVocabulary(const QList<QStringList> &terms)
{
    feed_->setVocabulary(terms);
}

void Panel::addEvent(const QString &id, const ClassEvent &event)
{
    feed_->addEvent(id, event);
}

void Panel::markEventAdded(const QString &id)
{
    feed_->markEventAdded(id);
}

void Panel::showYou(const QString &text, const QList<Attachment> &attachments)
{
    feed_->showYou(text, attachments);
}

void Panel::addReply(const QString &text)
{
    feed_->addReply(text);
}

void Panel::refreshChips()
{
    while (chipRow_->count() > 1) {
        QLayoutItem *item = chipRow_->takeAt(0);
        delete item->widget();
        delete item;
    }
    const QList<Attachment> &attachments = input_->files().attachments();
    for (qsizetype i = 0; i < attachments.size(); ++i) {
        auto *chip = new QPushButton(ChatFiles::label(attachments[i]) + u"  ✕");
        chip->setToolTip(QStringLiteral("点一下移除"));
        chip->setCursor(Qt::PointingHandCursor);
        chip->setStyleSheet(QStringLiteral("QPushButton { border: 1px solid palette(mid); border-radius: 10px;"
                                           " padding: 2px 8px; font-size: 11px; }"));
        connect(chip, &QPushButton::clicked, this, [this, i] { input_->removeFile(i); });
        chipRow_->insertWidget(int(i), chip);
    }
    chips_->setVisible(!attachments.isEmpty() && inputBox_->isVisibleTo(this));
}

void Panel::closeEvent(QCloseEvent *event)
{
    saveFrame();
    event->accept();
    onClose();
}

void Panel::changeEvent(QEvent *event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowStateChange && QMainWindow::isMinimized())
        onMinimize();
}

void Panel::moveEvent(QMoveEvent *event)
{
    QMainWindow::moveEvent(event);
    saveFrame();
    onFrameChanged();
}

void Panel::resizeEvent(QResizeEvent *event)
{
    QMainWindow::resizeEvent(event);
    saveFrame();
    onFrameChanged();
}

void Panel::saveFrame()
{
    if (isVisible() && !QMainWindow::isMinimized())
        WindowFrame::save(this, frameName);
}
