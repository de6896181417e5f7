#include "ui/slides/SlidesWindow.h"

#include "platform/PoolTask.h"
#include "settings/UserDefaults.h"
#include "ui/common/Look.h"
#include "ui/common/WindowFrame.h"
#include "ui/slides/SlideFiles.h"
#include "ui/slides/SlideTexts.h"
#include "ui/slides/SlidesBar.h"
#include "ui/slides/SlidesDrop.h"

#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QGuiApplication>
#include <QLabel>
#include <QPdfDocument>
#include <QPdfPageNavigator>
#include <QPdfView>
#include <QScreen>
#include <QStandardPaths>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {

constexpr auto lastKey = "slides.last";
constexpr auto autoFlipKey = "slides.autoFlip";
const QString frameName = u"QuilletSlides"_s;
const QString title = u"课件"_s;
constexpr QSize contentSize(560, 420);
constexpr QSize smallestSize(360, 280);
constexpr QMargins pageInsets(12, 4, 12, 12);
constexpr int emptyWidth = 320;
constexpr QMargins emptyPadding(16, 12, 16, 12);
constexpr int emptyPixels = 13;

const QString welcomeText = u"把课件拖到这里\n支持 PDF；PPT / Keynote 会用 LibreOffice 自动转换"_s;
const QString noConverterText = u"PPT 需要先导出成 PDF：在 PowerPoint 里选「文件 › 导出 › PDF」，再把 PDF 拖进来。\n"
                                u"（装了 LibreOffice 的话，Quillet 会自动转换。）"_s;
const QString failedConversionText = u"转换没有成功。可以在 PowerPoint / LibreOffice 里导出 PDF 再拖进来。"_s;
const QString unreadableText = u"打不开这个文件。"_s;
const QString picturesText = u"这份课件是图片，没法自动跟随"_s;

QString slidesFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u"/Slides"_s;
}

} // namespace

SlidesWindow::SlidesWindow(Text::Schedule schedule, QWidget *parent)
    : QWidget(parent, Qt::Window)
    , follower_(std::move(schedule))
    , bar_(new SlidesBar)
    , pdfView_(new QPdfView)
    , empty_(new QLabel(welcomeText))
{
    setWindowTitle(title);
    setMinimumSize(smallestSize);
    resize(contentSize);
    if (!WindowFrame::restore(this, frameName))
        if (const QScreen *screen = QGuiApplication::primaryScreen())
            move(screen->availableGeometry().center() - rect().center());

    pdfView_->setObjectName(u"pdfView"_s);
    pdfView_->setPageMode(QPdfView::PageMode::SinglePage);
    pdfView_->setZoomMode(QPdfView::ZoomMode::FitInView);
    pdfView_->setFrameShape(QFrame::NoFrame);
    // One page fits in the view, so there is nothing to scroll; the space around the page comes
    // from the layout, as Qt 6.4 leaves the vertical document margins out of its fit.
    pdfView_->setDocumentMargins({});
    pdfView_->setPageSpacing(0);
    pdfView_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pdfView_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    empty_->setObjectName(u"empty"_s);
    empty_->setWordWrap(true);
    empty_->setAlignment(Qt::AlignCenter);
    paintLooks();
    fitEmpty();
    refreshPageLabel();

    auto *content = new SlidesDrop(this);
    auto *pageArea = new QGridLayout;
    pageArea->setContentsMargins(pageInsets);
    pageArea->addWidget(pdfView_, 0, 0);
    pageArea->addWidget(empty_, 0, 0, Qt::AlignCenter);
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(bar_);
    column->addLayout(pageArea, 1);
    auto *outer = new QVBoxLayout(this);
    outer->setContentsMargins(0, 0, 0, 0);
    outer->addWidget(content);

    content->onDrop = [this](const QStringList &paths) { open(paths.first()); };
    bar_->onOpen = [this] { pick(); };
    bar_->onPrevious = [this] { goTo(currentPage() - 1); };
    bar_->onNext = [this] { goTo(currentPage() + 1); };
    bar_->onAutoFlip = [this](bool on) { autoChanged(on); };
    bar_->onHint = [this] { goSuggested(); };
    connect(pdfView_->pageNavigator(), &QPdfPageNavigator::currentPageChanged, this,
            [this](int page) { pageChanged(page); });
    buildFollower();

    const QString last = UserDefaults::value(lastKey, QString()).toString();
    if (!last.isEmpty() && QFileInfo(last).isFile())
        load(last);
}

SlidesWindow::~SlidesWindow() = default;

bool SlidesWindow::isSlides(const QString &path)
{
    return SlideFiles::isSlides(path);
}

void SlidesWindow::buildFollower()
{
    const bool autoFlip = UserDefaults::value(autoFlipKey, false).toBool();
    bar_->setAutoFlip(autoFlip);
    follower_.setAutoFlip(autoFlip);
    follower_.makeProvider = [this] { return makeProvider(); };
    follower_.currentPage = [this] { return currentPage(); };
    follower_.onTurn = [this](int page) { goTo(page); };
    follower_.onSuggest = [this](int page) {
        bar_->showHint(u"老师可能在讲第 "_s + QString::number(page + 1) + u" 页 →"_s);
    };
}

void SlidesWindow::heard(const QString &line)
{
    follower_.heard(line);
}

void SlidesWindow::stopFollowing()
{
    follower_.stopFollowing();
}

void SlidesWindow::toggle()
{
    if (isVisible() && !isMinimized()) {
        hide();
        return;
    }
    if (isMinimized())
        showNormal();
    else
        show();
    raise();
    activateWindow();
}

void SlidesWindow::open(const QString &path)
{
    if (isMinimized())
        showNormal();
    show();
    raise();
    activateWindow();
    if (QFileInfo(path).suffix().compare(u"pdf", Qt::CaseInsensitive) == 0) {
        load(path);
        return;
    }
    if (SlideConverter::program().isEmpty()) {
        showEmpty(noConverterText);
        return;
    }
    showEmpty(u"正在用 LibreOffice 转换 "_s + QFileInfo(path).fileName() + u"…"_s);
    converter_.convert(path, slidesFolder(), [this](const std::optional<QString> &pdf) {
        if (pdf)
            load(*pdf);
        else
            showEmpty(failedConversionText);
    });
}

void SlidesWindow::pick()
{
    auto *dialog = new QFileDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    dialog->setFileMode(QFileDialog::ExistingFile);
    dialog->setNameFilter(u"课件 (*.pdf *.ppt *.pptx *.key *.odp)"_s);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &path) { open(path); });
    dialog->open();
}

void SlidesWindow::load(const QString &path)
{
    // A file that can't be shown leaves the deck on show as it is.
    auto *document = new QPdfDocument(this);
    if (document->load(path) != QPdfDocument::Error::None || document->pageCount() < 1) {
        delete document;
        showEmpty(unreadableText);
        return;
    }
    pdfView_->setDocument(document);
    delete std::exchange(document_, document);
    goTo(0);

    UserDefaults::setValue(lastKey, path);
    setWindowTitle(title + u" · "_s + QFileInfo(path).completeBaseName());
    empty_->hide();
    follower_.setPages({});
    bar_->hideHint();
    refreshPageLabel();
    readPages(path);
}

void SlidesWindow::readPages(const QString &path)
{
    const int reading = ++reading_;
    PoolTask::start<QStringList>(
        this, [path] { return SlideTexts::read(path); },
        [this, reading](const QStringList &texts) {
            if (reading != reading_)
                return;
            follower_.setPages(texts);
            if (follower_.onlyPictures())
                bar_->showHint(picturesText);
        });
}

void SlidesWindow::showEmpty(const QString &text)
{
    empty_->setText(text);
    fitEmpty();
    empty_->show();
}

void SlidesWindow::fitEmpty()
{
    // The text as wide as its longest line needs, up to the limit (a wrapping label would pick
    // less), and the card's padding around it.
    int widest = 0;
    for (const QString &line : empty_->text().split(u'\n'))
        widest = std::max(widest, empty_->fontMetrics().horizontalAdvance(line) + 2);
    empty_->setFixedWidth(std::min(emptyWidth, widest) + emptyPadding.left() + emptyPadding.right());
}

void SlidesWindow::goTo(int page)
{
    if (!document_ || document_->pageCount() < 1)
        return;
    QPdfPageNavigator *navigator = pdfView_->pageNavigator();
    navigator->jump(std::clamp(page, 0, document_->pageCount() - 1), {}, navigator->currentZoom());
}

int SlidesWindow::currentPage() const
{
    return document_ ? pdfView_->pageNavigator()->currentPage() : 0;
}

void SlidesWindow::pageChanged(int page)
{
    refreshPageLabel();
    if (follower_.pageChanged(page))
        bar_->hideHint();
}

void SlidesWindow::refreshPageLabel()
{
    const int count = document_ ? document_->pageCount() : 0;
    bar_->setPageText(count < 1 ? QString()
                                : QString::number(currentPage() + 1) + u" / "_s + QString::number(count));
}

void SlidesWindow::autoChanged(bool on)
{
    UserDefaults::setValue(autoFlipKey, on);
    follower_.setAutoFlip(on);
}

void SlidesWindow::goSuggested()
{
    if (const std::optional<int> page = follower_.suggested())
        goTo(*page);
}

void SlidesWindow::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        paintLooks();
}

void SlidesWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    saveFrame();
}

void SlidesWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    saveFrame();
}

void SlidesWindow::paintLooks()
{
    // The page lies on the window's own soft colour rather than QPdfView's dark grey.
    QPalette around = pdfView_->palette();
    around.setColor(QPalette::Dark, Look::softBackground(palette()));
    pdfView_->setPalette(around);

    // A soft card, so the words stay readable when they lie over a page.
    QFont font = empty_->font();
    font.setPixelSize(emptyPixels);
    empty_->setFont(font);
    const QColor text = Look::secondaryText(palette());
    const auto rgba = [&text](int alpha) {
        return u"rgba(%1, %2, %3, %4)"_s.arg(text.red()).arg(text.green()).arg(text.blue()).arg(alpha);
    };
    empty_->setStyleSheet(u"QLabel { background: %1; color: %2; border: 1px solid %3; border-radius: 10px; "
                          u"padding: %4px %5px; }"_s.arg(Look::softBackground(palette()).name(), rgba(text.alpha()),
                                                         rgba(24))
                              .arg(emptyPadding.top())
                              .arg(emptyPadding.left()));
}

void SlidesWindow::saveFrame()
{
    if (isVisible())
        WindowFrame::save(this, frameName);
}
