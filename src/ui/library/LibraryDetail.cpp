#include "ui/library/LibraryDetail.h"

#include "ui/common/IconButton.h"
#include "ui/common/Look.h"
#include "ui/library/LibraryLook.h"
#include "ui/library/LibraryNotes.h"
#include "ui/library/LibraryPlayer.h"
#include "ui/library/LibraryTexts.h"
#include "ui/web/TranscriptView.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QEvent>
#include <QCompleter>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWebEngineView>

namespace {

QFont pixelFont(const QFont &base, int pixels, QFont::Weight weight = QFont::Normal)
{
    QFont font = base;
    font.setPixelSize(pixels);
    font.setWeight(weight);
    return font;
}

} // namespace

LibraryDetail::LibraryDetail(Text::Schedule notesSchedule, QWidget *parent)
    : QWidget(parent)
    , titleField_(new QLineEdit(this))
    , categoryBox_(new QComboBox(this))
    , revealButton_(new IconButton(QStringLiteral("arrow.up.forward.square"), QStringLiteral("在文件管理器中显示"), this))
    , refineButton_(new IconButton(QStringLiteral("wand.and.stars"),
                                   QStringLiteral("精修文字稿：用整段录音重新识别一遍，让文字稿更准"), this))
    , restoreButton_(new QPushButton(QStringLiteral("恢复"), this))
    , trashButton_(new IconButton(QStringLiteral("trash"), QString(), this))
    , info_(new QLabel(this))
    , player_(new LibraryPlayer(this))
    , tabs_(new QButtonGroup(this))
    , pages_(new QStackedWidget(this))
    , transcript_(new TranscriptView(QStringLiteral("panel"), LibraryLook::transcriptSize, this))
    , aiNotes_(reader(QStringLiteral("aiNotes")))
    , words_(reader(QStringLiteral("words")))
    , myNotes_(new LibraryNotes(std::move(notesSchedule), this))
{
    info_->setObjectName(QStringLiteral("info"));
    info_->setFont(pixelFont(font(), LibraryLook::infoSize));
    info_->setForegroundRole(QPalette::PlaceholderText);
    info_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    myNotes_->setFont(pixelFont(font(), LibraryLook::textSize));
    myNotes_->setPlaceholderText(QStringLiteral("在这里写下自己的笔记，会自动保存。"));
    transcript_->setSeekable(true);
    transcript_->onLineClick = [this](int id) { player_->playLine(id); };
    player_->onActive = [this](int line) { transcript_->setActive(line); };

    pages_->addWidget(transcript_->web());
    pages_->addWidget(aiNotes_);
    pages_->addWidget(words_);
    pages_->addWidget(myNotes_);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(LibraryLook::paneMargin, 16, LibraryLook::paneMargin, LibraryLook::paneMargin);
    column->setSpacing(8);
    column->addWidget(nameRow());
    column->addWidget(categoryRow());
    column->addWidget(info_);
    column->addSpacing(6);
    column->addWidget(player_);
    column->addSpacing(6);
    column->addWidget(tabRow());
    column->addWidget(pages_, 1);
}

QWidget *LibraryDetail::nameRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    auto *pencil = new IconButton(QStringLiteral("pencil"), QStringLiteral("改名"), row);
    connect(pencil, &QToolButton::clicked, titleField_, [this] { titleField_->setFocus(); });
    titleField_->setObjectName(QStringLiteral("title"));
    titleField_->setPlaceholderText(QStringLiteral("给这节课起个名字"));
    titleField_->setFont(pixelFont(font(), LibraryLook::titleSize, QFont::DemiBold));
    titleField_->setFrame(false);
    QPalette clear;
    clear.setColor(QPalette::Base, Qt::transparent);
    titleField_->setPalette(clear);
    connect(titleField_, &QLineEdit::editingFinished, this, [this] { onTitle(titleField_->text()); });
    layout->addWidget(pencil);
    layout->addWidget(titleField_, 1);
    return row;
}

QWidget *LibraryDetail::categoryRow()
{
    auto *row = new QWidget(this);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(6);
    auto *folder = new IconButton(QStringLiteral("folder"), QStringLiteral("分类"), row);
    connect(folder, &QToolButton::clicked, categoryBox_, [this] { categoryBox_->setFocus(); });
    categoryBox_->setObjectName(QStringLiteral("category"));
    categoryBox_->setEditable(true);
    categoryBox_->setInsertPolicy(QComboBox::NoInsert);
    categoryBox_->setFixedWidth(LibraryLook::categoryWidth);
    categoryBox_->lineEdit()->setPlaceholderText(QStringLiteral("分类（比如课程名）"));
    categoryBox_->completer()->setCompletionMode(QCompleter::InlineCompletion);
    connect(categoryBox_->lineEdit(), &QLineEdit::editingFinished, this, [this] { onCategory(categoryBox_->currentText()); });
    // A choice from the list: the box shows it only after this signal.
    connect(categoryBox_, &QComboBox::activated, this, [this] {
        QTimer::singleShot(0, this, [this] { onCategory(categoryBox_->currentText()); });
    });
    revealButton_->setObjectName(QStringLiteral("reveal"));
    refineButton_->setObjectName(QStringLiteral("refine"));
    restoreButton_->setObjectName(QStringLiteral("restore"));
    trashButton_->setObjectName(QStringLiteral("trash"));
    connect(revealButton_, &QToolButton::clicked, this, [this] { onReveal(); });
    connect(refineButton_, &QToolButton::clicked, this, [this] { onRefine(); });
    connect(restoreButton_, &QPushButton::clicked, this, [this] { onRestore(); });
    connect(trashButton_, &QToolButton::clicked, this, [this] { onDelete(); });
    layout->addWidget(folder);
    layout->addWidget(categoryBox_);
    layout->addStretch(1);
    for (QWidget *button : {static_cast<QWidget *>(revealButton_), static_cast<QWidget *>(refineButton_),
                            static_cast<QWidget *>(restoreButton_), static_cast<QWidget *>(trashButton_)})
        layout->addWidget(button);
    return row;
}

QWidget *LibraryDetail::tabRow()
{
    auto *row = new QWidget(this);
    row->setObjectName(QStringLiteral("tabs"));
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    const QStringList names{QStringLiteral("文字稿"), QStringLiteral("AI 笔记"), QStringLiteral("单词表"),
                            QStringLiteral("我的笔记")};
    for (int i = 0; i < names.size(); ++i) {
        auto *button = new QToolButton(row);
        button->setText(names[i]);
        button->setCheckable(true);
                button->setToolButtonStyle(Qt::ToolButtonTextOnly);
        button->setMinimumWidth(76);
        if (i == 0 || i + 1 == names.size())
            button->setObjectName(i == 0 ? QStringLiteral("first") : QStringLiteral("last"));
        tabs_->addButton(button, i);
        layout->addWidget(button);
    }
    layout->addStretch(1);
    tabs_->button(0)->setChecked(true);
    tabRow_ = row;
    styleTabs();
    connect(tabs_, &QButtonGroup::idClicked, this, [this](int id) { setTab(Tab(id)); });
    return row;
}

QPlainTextEdit *LibraryDetail::reader(const QString &name)
{
    auto *view = new QPlainTextEdit(this);
    view->setObjectName(name);
    view->setReadOnly(true);
    view->setFont(pixelFont(font(), LibraryLook::textSize));
    view->document()->setDocumentMargin(12);
    return view;
}

void LibraryDetail::showClass(const LibraryListing::Entry &entry, const State &state)
{
    const SessionData &data = entry.data;
    titleField_->setText(data.title);
    titleField_->setCursorPosition(0);
    categoryBox_->setCurrentIndex(-1);
    categoryBox_->setEditText(data.category.value_or(QString()));

    LibraryTexts::InfoState facts{std::nullopt, state.refining};
    if (entry.deleted)
        facts.daysLeft = SessionStore::daysLeft(data);
    info_->setText(LibraryTexts::info(data, facts));
    fillTranscript(data);
    aiNotes_->setPlainText(LibraryTexts::aiNotes(data));
    words_->setPlainText(LibraryTexts::words(data));
    myNotes_->load(entry.folder);

    titleField_->setReadOnly(entry.deleted);
    categoryBox_->setEnabled(!entry.deleted);
    restoreButton_->setVisible(entry.deleted);
    trashButton_->setDescription(entry.deleted ? QStringLiteral("永久删除")
                                               : u"删除（先放进「最近删除」，" + QString::number(SessionStore::keepDays)
                                                     + u" 天内可以恢复）");
    trashButton_->setTint(entry.deleted ? IconButton::Tint::red : IconButton::Tint::secondary);
    const QString audio = entry.folder + u'/' + SessionStore::audioFile;
    refineButton_->setEnabled(!entry.deleted && !state.live && !state.refining && data.audioRemoved != true
                              && QFileInfo(audio).isFile());
    openAudio(entry, state.live);
}

void LibraryDetail::fillTranscript(const SessionData &data)
{
    transcript_->clear(data.lines.isEmpty() ? QStringLiteral("这节课没有识别到内容") : QString());
    for (int i = 0; i < data.lines.size(); ++i) {
        transcript_->addLine(i, data.lines[i].text);
        if (!data.lines[i].translation.isEmpty())
            transcript_->setTranslation(i, data.lines[i].translation);
    }
}

void LibraryDetail::openAudio(const LibraryListing::Entry &entry, bool live)
{
    LibraryPlayer::Track track;
    for (const SessionData::Line &line : entry.data.lines)
        track.lineTimes << line.t;
    track.recordDuration = entry.data.duration;
    if (live)
        track.missing = QStringLiteral("正在录音，停止后可以播放");
    else if (entry.data.audioRemoved == true)
        track.missing = QStringLiteral("录音已清理以节省空间（文字和笔记都在）");
    else
        track.missing = QStringLiteral("没有录音文件");
    if (!live)
        track.audio = entry.folder + u'/' + SessionStore::audioFile;
    player_->open(track);
}

void LibraryDetail::setTitle(const QString &title)
{
    titleField_->setText(title);
    titleField_->setCursorPosition(0);
}

void LibraryDetail::setCategories(const QStringList &categories)
{
    const QString typed = categoryBox_->currentText();
    categoryBox_->clear();
    categoryBox_->addItems(categories);
    categoryBox_->setCurrentIndex(-1);
    categoryBox_->setEditText(typed);
}

void LibraryDetail::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && tabRow_)
        styleTabs();
}

// A segmented control: one rounded outline, the chosen segment filled with the accent. Made from
// the palette, so it is made again when the look changes.
void LibraryDetail::styleTabs()
{
    const QPalette &colours = palette();
    const auto name = [&](QPalette::ColorRole role) { return colours.color(role).name(); };
    tabRow_->setStyleSheet(
        u"QToolButton { border: 1px solid " + name(QPalette::Mid) + u"; border-left: none; padding: 4px 16px;"
        u" background: " + name(QPalette::Button) + u"; color: " + name(QPalette::ButtonText) + u"; }"
        u"QToolButton:checked { background: " + name(QPalette::Highlight) + u"; color: "
        + name(QPalette::HighlightedText) + u"; border-color: " + name(QPalette::Highlight) + u"; }"
        u"QToolButton#first { border-left: 1px solid " + name(QPalette::Mid) + u"; border-top-left-radius: 6px;"
        u" border-bottom-left-radius: 6px; }"
        u"QToolButton#first:checked { border-left-color: " + name(QPalette::Highlight) + u"; }"
        u"QToolButton#last { border-top-right-radius: 6px; border-bottom-right-radius: 6px; }");
}

void LibraryDetail::setTab(Tab tab)
{
    tabs_->button(tab)->setChecked(true);
    pages_->setCurrentIndex(tab);
    if (tab == myNotesTab)
        myNotes_->setFocus();
}
