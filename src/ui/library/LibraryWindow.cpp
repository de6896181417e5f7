#include "ui/library/LibraryWindow.h"

#include "platform/PoolTask.h"
#include "ui/common/WindowFrame.h"
#include "ui/library/FileReveal.h"
#include "ui/library/LibraryDetail.h"
#include "ui/library/LibraryLook.h"
#include "ui/library/LibraryModel.h"
#include "ui/library/LibraryNotes.h"
#include "ui/library/LibraryPlayer.h"
#include "ui/library/LibraryRowDelegate.h"
#include "ui/library/LibraryTexts.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSplitter>
#include <QStackedWidget>
#include <QStandardItemModel>
#include <QVBoxLayout>

namespace {

const QString frameName = QStringLiteral("QuilletLibrary");
const QString everything = QStringLiteral("全部");
const QString trashTitle = QStringLiteral("最近删除");

using Shelves = std::shared_ptr<const LibraryListing::Shelves>;

} // namespace

LibraryWindow::LibraryWindow(Text::Schedule notesSchedule, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , model_(new LibraryModel(this))
    , filter_(new QComboBox(this))
    , search_(new QLineEdit(this))
    , table_(new QListView(this))
    , empty_(new QLabel(this))
    , right_(new QStackedWidget(this))
    , detail_(new LibraryDetail(std::move(notesSchedule), this))
{
    setWindowTitle(QStringLiteral("课程记录"));
    setMinimumSize(720, 460);
    resize(960, 640);
    WindowFrame::restore(this, frameName);
    model_->isLive = [this](const QString &folder) { return isLive(folder); };

    right_->addWidget(new QWidget(right_));
    right_->addWidget(detail_);
    auto *split = new QSplitter(this);
    split->setHandleWidth(1);
    split->setChildrenCollapsible(false);
    split->addWidget(sidePane());
    split->addWidget(right_);
    split->setStretchFactor(1, 1);
    split->setSizes({LibraryLook::sideWidth, 960 - LibraryLook::sideWidth});
    split->handle(1)->setAutoFillBackground(true);
    split->handle(1)->setBackgroundRole(QPalette::Mid);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);

    detail_->onTitle = [this](const QString &title) { commitTitle(title); };
    detail_->onCategory = [this](const QString &category) { commitCategory(category); };
    detail_->onReveal = [this] { revealCurrent(); };
    detail_->onRefine = [this] { refineCurrent(); };
    detail_->onRestore = [this] { restoreCurrent(); };
    detail_->onDelete = [this] { deleteCurrent(); };
    reload();
}

QWidget *LibraryWindow::sidePane()
{
    auto *side = new QWidget(this);
    side->setObjectName(QStringLiteral("side"));
    side->setMinimumWidth(LibraryLook::sideWidth);
    side->setMaximumWidth(LibraryLook::sideWidth * 3 / 2);
    filter_->setObjectName(QStringLiteral("filter"));
    search_->setObjectName(QStringLiteral("search"));
    search_->setPlaceholderText(QStringLiteral("搜索名称或内容"));
    search_->setClearButtonEnabled(true);
    table_->setObjectName(QStringLiteral("table"));
    table_->setModel(model_);
    table_->setItemDelegate(new LibraryRowDelegate(table_));
    table_->setUniformItemSizes(true);
    table_->setFrameShape(QFrame::NoFrame);
    table_->setMouseTracking(true);
    table_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    table_->setSelectionMode(QAbstractItemView::SingleSelection);
    table_->viewport()->setBackgroundRole(QPalette::Window);
    empty_->setObjectName(QStringLiteral("empty"));
    empty_->setAlignment(Qt::AlignCenter);
    empty_->setWordWrap(true);
    empty_->setForegroundRole(QPalette::PlaceholderText);
    empty_->setContentsMargins(16, 0, 16, 0);

    auto *column = new QVBoxLayout(side);
    column->setContentsMargins(0, LibraryLook::margin, 0, 0);
    column->setSpacing(8);
    for (QWidget *field : {static_cast<QWidget *>(filter_), static_cast<QWidget *>(search_)}) {
        auto *row = new QHBoxLayout;
        row->setContentsMargins(LibraryLook::margin, 0, LibraryLook::margin, 0);
        row->addWidget(field);
        column->addLayout(row);
    }
    column->addWidget(table_, 1);
    column->addWidget(empty_, 1);

    connect(filter_, &QComboBox::activated, this, [this] { applyFilter(); });
    connect(search_, &QLineEdit::textChanged, this, [this] { applyFilter(); });
    connect(table_->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &index) { selectRow(index.isValid() ? std::optional(index.row()) : std::nullopt); });
    return side;
}

void LibraryWindow::show()
{
    reload();
    QWidget::show();
    raise();
    activateWindow();
}

bool LibraryWindow::isVisible() const
{
    return QWidget::isVisible();
}

void LibraryWindow::reload()
{
    if (listing_) {
        again_ = true;
        return;
    }
    listing_ = true;
    PoolTask::start<Shelves>(
        this,
        [root = SessionStore::root(), trashRoot = SessionStore::trashRoot()] {
            return std::make_shared<const LibraryListing::Shelves>(LibraryListing::read(root, trashRoot));
        },
        [this](const Shelves &shelves) {
            listing_ = false;
            const bool stale = std::exchange(again_, false);
            if (!stale || !listedOnce_)
                apply(shelves);
            if (stale)
                reload();
        });
}

void LibraryWindow::refresh(const QString &folder)
{
    if (current_ && current_->folder == folder) {
        reopen_ = folder;
        current_.reset();
    }
    reload();
}

void LibraryWindow::setRefining(const QSet<QString> &folders)
{
    refining_ = folders;
}

void LibraryWindow::apply(std::shared_ptr<const LibraryListing::Shelves> shelves)
{
    rebuildFilter(*shelves);
    model_->setShelves(std::move(shelves));
    detail_->setCategories(LibraryListing::categories(model_->shelves().classes));
    applyFilter();
    const QString wanted = current_ ? current_->folder : std::exchange(reopen_, QString());
    if (const auto row = model_->row(wanted))
        selectRow(row);
    else
        selectRow(model_->rowCount() == 0 ? std::nullopt : std::optional(0));
    listedOnce_ = true;
    Q_EMIT listed();
}

void LibraryWindow::rebuildFilter(const LibraryListing::Shelves &shelves)
{
    const bool trash = trashChosen();
    const QString chosen = filter_->currentText();
    const QSignalBlocker quiet(filter_);
    filter_->clear();
    filter_->addItem(everything);
    filter_->addItems(LibraryListing::categories(shelves.classes));
    const bool someUncategorized = std::any_of(shelves.classes.begin(), shelves.classes.end(), [](const auto &entry) {
        return entry.data.category.value_or(QString()).isEmpty();
    });
    if (someUncategorized)
        filter_->addItem(SessionStore::uncategorized.toString());
    filter_->insertSeparator(filter_->count());
    filter_->addItem(shelves.deleted.isEmpty() ? trashTitle
                                               : trashTitle + u"（" + QString::number(shelves.deleted.size()) + u"）");
    filter_->setItemData(filter_->count() - 1, LibraryLook::red, Qt::ForegroundRole);
    // The separator has an empty title: never a choice to come back to.
    const int kept = chosen.isEmpty() ? -1 : filter_->findText(chosen);
    filter_->setCurrentIndex(trash ? filter_->count() - 1 : std::max(kept, 0));
}

bool LibraryWindow::trashChosen() const
{
    return filter_->currentText().startsWith(trashTitle);
}

void LibraryWindow::applyFilter()
{
    LibraryModel::Filter filter{trashChosen(), std::nullopt};
    if (!filter.trash && filter_->currentIndex() >= 1) {
        const QString title = filter_->currentText();
        filter.category = title == SessionStore::uncategorized ? QString() : title;
    }
    model_->apply(filter, search_->text());
    const bool nothing = model_->all().isEmpty();
    empty_->setText(LibraryTexts::empty(filter.trash));
    empty_->setVisible(nothing);
    table_->setVisible(!nothing);
    const auto row = current_ ? model_->row(current_->folder) : std::nullopt;
    selectRow(row);
}

void LibraryWindow::selectRow(std::optional<int> row)
{
    {
        const QSignalBlocker quiet(table_->selectionModel());
        if (row) {
            const QModelIndex index = model_->index(*row);
            table_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
            table_->scrollTo(index);
        } else {
            table_->selectionModel()->clear();
        }
    }
    table_->viewport()->update();
    select(row ? std::optional(model_->entry(*row)) : std::nullopt);
}

void LibraryWindow::select(const std::optional<LibraryListing::Entry> &entry)
{
    if ((!entry && !current_) || (entry && current_ && entry->folder == current_->folder))
        return;
    detail_->notes()->flush();
    detail_->player()->stop();
    current_ = entry;
    if (!current_) {
        detail_->notes()->load({});
        detail_->player()->close();
        right_->setCurrentIndex(0);
        return;
    }
    const bool live = !current_->deleted && isLive(current_->folder);
    detail_->showClass(*current_, {live, refining_.contains(current_->folder)});
    right_->setCurrentIndex(1);
}

void LibraryWindow::commitTitle(const QString &typed)
{
    if (!current_)
        return;
    const QString title = typed.trimmed();
    if (title.isEmpty() || title == current_->data.title) {
        detail_->setTitle(current_->data.title);
        return;
    }
    save(title, current_->data.category.value_or(QString()));
}

void LibraryWindow::commitCategory(const QString &typed)
{
    if (!current_ || current_->deleted)
        return;
    const QString category = typed.trimmed();
    if (category == current_->data.category.value_or(QString()))
        return;
    save(current_->data.title, category);
}

void LibraryWindow::save(const QString &title, const QString &category)
{
    const QString folder = current_->folder;
    if (isLive(folder))
        onLiveRename(title, category.isEmpty() ? std::nullopt : std::optional(category));
    else
        SessionStore::update(folder, title, category);
    if (auto data = SessionStore::load(folder))
        current_ = LibraryListing::entry(folder, std::move(*data), current_->deleted);
    reload();
}

void LibraryWindow::revealCurrent()
{
    if (current_)
        FileReveal::reveal(current_->folder);
}

void LibraryWindow::refineCurrent()
{
    if (current_)
        onRefine(current_->folder);
}

void LibraryWindow::restoreCurrent()
{
    if (!current_)
        return;
    detail_->player()->close();
    SessionStore::restore(current_->folder);
    forgetCurrent();
}

void LibraryWindow::deleteCurrent()
{
    if (!current_)
        return;
    if (!current_->deleted && isLive(current_->folder)) {
        say(QStringLiteral("这节课还在录音，先在主窗口点「停止」。"));
        return;
    }
    detail_->notes()->flush();
    detail_->player()->close();
    if (!current_->deleted) {
        SessionStore::moveToDeleted(current_->folder);
        forgetCurrent();
        return;
    }
    auto *ask = new QMessageBox(QMessageBox::Warning, windowTitle(), u"永久删除「" + current_->data.title + u"」？",
                                QMessageBox::NoButton, this);
    ask->setInformativeText(QStringLiteral("录音、文字稿和笔记会被彻底删除，无法恢复。"));
    ask->setObjectName(QStringLiteral("eraseQuestion"));
    ask->setAttribute(Qt::WA_DeleteOnClose);
    ask->setWindowModality(Qt::WindowModal);
    QPushButton *erase = ask->addButton(QStringLiteral("永久删除"), QMessageBox::DestructiveRole);
    ask->addButton(QStringLiteral("取消"), QMessageBox::RejectRole);
    connect(ask, &QMessageBox::finished, this, [this, ask, erase, folder = current_->folder] {
        if (ask->clickedButton() != erase)
            return;
        SessionStore::erase(folder);
        if (current_ && current_->folder == folder)
            forgetCurrent();
        else
            reload();
    });
    ask->open();
}

void LibraryWindow::forgetCurrent()
{
    selectRow(std::nullopt);
    reload();
}

void LibraryWindow::say(const QString &text)
{
    auto *sheet = new QMessageBox(QMessageBox::Information, windowTitle(), text, QMessageBox::Ok, this);
    sheet->setObjectName(QStringLiteral("liveNotice"));
    sheet->setAttribute(Qt::WA_DeleteOnClose);
    sheet->setWindowModality(Qt::WindowModal);
    sheet->open();
}

void LibraryWindow::closeEvent(QCloseEvent *event)
{
    detail_->notes()->flush();
    detail_->player()->stop();
    WindowFrame::save(this, frameName);
    event->ignore();
    hide();
}

void LibraryWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    if (QWidget::isVisible())
        WindowFrame::save(this, frameName);
}

void LibraryWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    if (QWidget::isVisible())
        WindowFrame::save(this, frameName);
}
