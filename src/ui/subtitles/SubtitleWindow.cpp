#include "ui/subtitles/SubtitleWindow.h"

#include "settings/UserDefaults.h"
#include "ui/common/IconButton.h"
#include "ui/common/WindowFrame.h"
#include "ui/subtitles/SubtitleColors.h"
#include "ui/subtitles/SubtitleFonts.h"
#include "ui/subtitles/SubtitleGrip.h"
#include "ui/subtitles/SubtitleToolbar.h"
#include "ui/web/TranscriptView.h"

#include <QCloseEvent>
#include <QColorDialog>
#include <QGuiApplication>
#include <QPainter>
#include <QPropertyAnimation>
#include <QScreen>
#include <QWebEngineView>
#include <QWindow>

#include <xcb/xcb.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace {

constexpr int resizeMargin = 6;  // the page keeps clear of the edges, which resize the bar
constexpr int settingsRight = 12;
constexpr int toolbarGap = 6;
constexpr int toolbarRight = 10;
constexpr double defaultOpacity = 0.75;

// Whether a compositing manager runs on the X display: only then does a translucent window show
// what lies behind it. Other platforms always composite.
bool composited()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return true;
    xcb_connection_t *connection = x11->connection();
    static constexpr char name[] = "_NET_WM_CM_S0";
    const std::unique_ptr<xcb_intern_atom_reply_t, decltype(&free)> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, sizeof name - 1, name), nullptr), &free);
    if (!atom || atom->atom == XCB_NONE)
        return false;
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&free)> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr), &free);
    return owner && owner->owner != XCB_NONE;
}

double storedOpacity()
{
    bool ok = false;
    const double opacity = UserDefaults::value(SubtitleWindow::opacityKey, defaultOpacity).toDouble(&ok);
    return ok ? std::clamp(opacity, SubtitleToolbar::minimumOpacity, 1.0) : defaultOpacity;
}

QString storedColor(SubtitleStyleMenu::Target target)
{
    return UserDefaults::text(target == SubtitleStyleMenu::Target::translation ? SubtitleColors::translationKey
                                                                               : SubtitleColors::sourceKey);
}

} // namespace

SubtitleWindow::SubtitleWindow(QWidget *parent)
    : QWidget(parent, Qt::Window | Qt::FramelessWindowHint)
    , composited_(composited())
    , fontSize_(SubtitleFonts::storedSize())
    , opacity_(storedOpacity())
    , transcript_(new TranscriptView(QStringLiteral("bar"), fontSize_, this))
    , grip_(new SubtitleGrip(this))
    , settingsButton_(new IconButton(QStringLiteral("slider.horizontal.3"),
                                     QStringLiteral("调整透明度、字号、字体和颜色"), this, 13))
    , toolbar_(new SubtitleToolbar(opacity_, this))
    , animation_(new QPropertyAnimation(this, "geometry", this))
{
    setWindowTitle(QStringLiteral("字幕条"));
    setAttribute(Qt::WA_TranslucentBackground, composited_);
    // Level changes re-show the bar; only the student's own actions bring it to the front.
    setAttribute(Qt::WA_ShowWithoutActivating);
    setMouseTracking(true);
    setMinimumSize(smallestSize);
    animation_->setDuration(180);
    animation_->setEasingCurve(QEasingCurve::OutCubic);

    transcript_->web()->setParent(this);
    transcript_->setFont(fontID());
    applyColors();
    grip_->raise();
    settingsButton_->raise();
    connect(settingsButton_, &QToolButton::clicked, this, &SubtitleWindow::toggleSettings);
    toolbar_->hide();
    toolbar_->raise();
    toolbar_->onOpacity = [this](double opacity) { setOpacity(opacity); };
    toolbar_->onSmaller = [this] { smaller(); };
    toolbar_->onLarger = [this] { larger(); };
    toolbar_->onStyle = [this] { showStyleMenu(); };

    if (!WindowFrame::restore(this, QString::fromLatin1(frameName)))
        placeDefault();
    placeLayers();
}

double SubtitleWindow::textSize()
{
    return SubtitleFonts::storedSize();
}

TranscriptView &SubtitleWindow::transcript()
{
    return *transcript_;
}

void SubtitleWindow::toggle()
{
    if (isMinimized()) {
        setWindowState(windowState() & ~Qt::WindowMinimized);
        return;
    }
    if (!isVisible())
        show();
    else
        hideBar();
}

void SubtitleWindow::show()
{
    QWidget::show();
    raise();
    activateWindow();
}

bool SubtitleWindow::isVisible() const
{
    return QWidget::isVisible();
}

QString SubtitleWindow::fontID() const
{
    return SubtitleFonts::storedID();
}

void SubtitleWindow::setFontFamily(const QString &fontID)
{
    UserDefaults::setValue(SubtitleFonts::fontKey, fontID);
    transcript_->setFont(fontID);
    onFont(fontID);
}

void SubtitleWindow::setTextSize(double points)
{
    fontSize_ = SubtitleFonts::clampSize(points);
    UserDefaults::setValue(SubtitleFonts::sizeKey, fontSize_);
    transcript_->setFontSize(fontSize_);
}

QRect SubtitleWindow::frame() const
{
    return geometry();
}

void SubtitleWindow::setFrame(const QRect &frame, bool animated)
{
    animation_->stop();
    if (!animated || !isVisible()) {
        setGeometry(frame);
        return;
    }
    animation_->setStartValue(geometry());
    animation_->setEndValue(frame);
    animation_->start();
}

void SubtitleWindow::setFloating(bool floating)
{
    if (windowFlags().testFlag(Qt::WindowStaysOnTopHint) == floating)
        return;
    // New flags take the window down; put it back where it was.
    const QRect frame = geometry();
    const bool shown = isVisible();
    setWindowFlag(Qt::WindowStaysOnTopHint, floating);
    setGeometry(frame);
    if (shown)
        QWidget::show();
}

void SubtitleWindow::setOpacity(double opacity)
{
    opacity_ = std::clamp(opacity, SubtitleToolbar::minimumOpacity, 1.0);
    UserDefaults::setValue(opacityKey, opacity_);
    if (std::abs(toolbar_->opacity() - opacity_) >= 0.005)
        toolbar_->setOpacity(opacity_);
    update();
}

void SubtitleWindow::smaller()
{
    setTextSize(fontSize_ - 2);
}

void SubtitleWindow::larger()
{
    setTextSize(fontSize_ + 2);
}

void SubtitleWindow::toggleSettings()
{
    toolbar_->setVisible(toolbar_->isHidden());
    settingsButton_->setTint(settingsOpen() ? IconButton::Tint::accent : IconButton::Tint::secondary);
}

bool SubtitleWindow::settingsOpen() const
{
    return !toolbar_->isHidden();
}

SubtitleStyleMenu *SubtitleWindow::styleMenu()
{
    using Target = SubtitleStyleMenu::Target;
    auto *menu = new SubtitleStyleMenu({fontID(), storedColor(Target::translation), storedColor(Target::source)}, this);
    menu->onFont = [this](const QString &id) { setFontFamily(id.isEmpty() ? QStringLiteral("system") : id); };
    menu->onColor = [this](Target target, const QString &value) { pickColor(target, value); };
    menu->onCustomColor = [this](Target target) { customColor(target); };
    return menu;
}

void SubtitleWindow::customColor(SubtitleStyleMenu::Target target)
{
    pickingTranslation_ = target == SubtitleStyleMenu::Target::translation;
    if (!colorPanel_) {
        colorPanel_ = new QColorDialog(this);
        colorPanel_->setWindowTitle(QStringLiteral("字体和颜色"));
        connect(colorPanel_, &QColorDialog::colorSelected, this, &SubtitleWindow::colorPanelChanged);
    }
    colorPanel_->setCurrentColor(SubtitleColors::parse(storedColor(target)).value_or(QColor(Qt::white)));
    colorPanel_->open();
}

void SubtitleWindow::colorPanelChanged(const QColor &color)
{
    UserDefaults::setValue(pickingTranslation_ ? SubtitleColors::translationKey : SubtitleColors::sourceKey,
                           SubtitleColors::hex(color));
    applyColors();
}

void SubtitleWindow::pickColor(SubtitleStyleMenu::Target target, const QString &value)
{
    UserDefaults::setValue(target == SubtitleStyleMenu::Target::translation ? SubtitleColors::translationKey
                                                                            : SubtitleColors::sourceKey,
                           value);
    applyColors();
}

void SubtitleWindow::applyColors()
{
    transcript_->setColors(storedColor(SubtitleStyleMenu::Target::translation),
                           storedColor(SubtitleStyleMenu::Target::source));
}

void SubtitleWindow::showStyleMenu()
{
    SubtitleStyleMenu *menu = styleMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QWidget *anchor = toolbar_->styleButton();
    // Opens upwards, its bottom 4 pixels above the button, as the bar usually sits low on screen.
    const QPoint top = anchor->mapToGlobal(QPoint(0, 0));
    menu->popup(QPoint(top.x(), top.y() - 4 - menu->sizeHint().height()));
}

void SubtitleWindow::placeDefault()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect area = screen ? screen->availableGeometry() : QRect(QPoint(), defaultSize);
    const int left = area.left() + (area.width() - defaultSize.width()) / 2;
    const int top = area.bottom() + 1 - 60 - defaultSize.height();
    setGeometry(QRect(QPoint(left, top), defaultSize));
}

void SubtitleWindow::placeLayers()
{
    const int strip = SubtitleGrip::stripHeight;
    grip_->setGeometry(0, 0, width(), strip);
    transcript_->web()->setGeometry(resizeMargin, strip, width() - 2 * resizeMargin,
                                    height() - strip - resizeMargin);
    const QSize button = settingsButton_->sizeHint();
    settingsButton_->setGeometry(width() - settingsRight - button.width(), (strip - button.height()) / 2,
                                 button.width(), button.height());
    const QSize bar = toolbar_->sizeHint();
    toolbar_->setGeometry(width() - toolbarRight - bar.width(), strip + toolbarGap, bar.width(), bar.height());
}

void SubtitleWindow::hideBar()
{
    QWidget::hide();
    onHide();
}

void SubtitleWindow::saveFrame()
{
    WindowFrame::save(this, QString::fromLatin1(frameName));
}

void SubtitleWindow::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    QColor surface = QColor::fromRgbF(0.075f, 0.078f, 0.085f);
    if (!composited_) {
        painter.fillRect(rect(), surface);  // nothing would show through: stay solid
        return;
    }
    surface.setAlphaF(float(0.96 * opacity_));
    // The strip draws the top; its rounder corners would leave slivers of the surface beside them.
    painter.setClipRect(rect().adjusted(0, SubtitleGrip::stripHeight, 0, 0));
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(surface);
    painter.drawRoundedRect(QRectF(rect()), 16, 16);
}

void SubtitleWindow::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    placeLayers();
    if (QWidget::isVisible())
        saveFrame();
}

void SubtitleWindow::moveEvent(QMoveEvent *event)
{
    QWidget::moveEvent(event);
    if (QWidget::isVisible())
        saveFrame();
}

void SubtitleWindow::closeEvent(QCloseEvent *event)
{
    event->ignore();
    hideBar();
}

void SubtitleWindow::hideEvent(QHideEvent *event)
{
    QWidget::hideEvent(event);
    saveFrame();
}

void SubtitleWindow::mousePressEvent(QMouseEvent *event)
{
    const QPoint point = event->position().toPoint();
    const Qt::Edges edges = SubtitleGrip::edgesAt(point, size());
    if (event->button() != Qt::LeftButton || (!edges && point.y() >= SubtitleGrip::stripHeight)) {
        QWidget::mousePressEvent(event);
        return;
    }
    QWindow *window = windowHandle();
    const bool byWindowManager = window && (edges ? window->startSystemResize(edges) : window->startSystemMove());
    if (!byWindowManager)
        drag_ = Drag{edges, event->globalPosition().toPoint(), geometry()};
}

void SubtitleWindow::mouseMoveEvent(QMouseEvent *event)
{
    if (drag_) {
        setGeometry(dragged(event->globalPosition().toPoint()));
        return;
    }
    setCursor(SubtitleGrip::cursorFor(SubtitleGrip::edgesAt(event->position().toPoint(), size())));
}

void SubtitleWindow::mouseReleaseEvent(QMouseEvent *event)
{
    drag_.reset();
    QWidget::mouseReleaseEvent(event);
}

QRect SubtitleWindow::dragged(QPoint global) const
{
    const QPoint delta = global - drag_->start;
    QRect frame = drag_->frame;
    if (!drag_->edges)
        return frame.translated(delta);
    const QSize least = minimumSize();
    if (drag_->edges & Qt::LeftEdge)
        frame.setLeft(std::min(frame.left() + delta.x(), frame.right() + 1 - least.width()));
    if (drag_->edges & Qt::RightEdge)
        frame.setRight(std::max(frame.right() + delta.x(), frame.left() + least.width() - 1));
    if (drag_->edges & Qt::TopEdge)
        frame.setTop(std::min(frame.top() + delta.y(), frame.bottom() + 1 - least.height()));
    if (drag_->edges & Qt::BottomEdge)
        frame.setBottom(std::max(frame.bottom() + delta.y(), frame.top() + least.height() - 1));
    return frame;
}
