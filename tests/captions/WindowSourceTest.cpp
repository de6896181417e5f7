#include "captions/WindowSource.h"

#include "platform/X11WindowCapture.h"

#include "QtPrinters.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QLabel>
#include <QProcess>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>

#include <gtest/gtest.h>

#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

xcb_connection_t *qtConnection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

// A window of another application, as the source sees one: lines of black text in a large font on
// white, under the application name given.
class CaptionWindow final : public QWidget
{
public:
    CaptionWindow(const QByteArray &application, const QStringList &lines, QSize size)
    {
        setWindowFlag(Qt::FramelessWindowHint);
        setAutoFillBackground(true);
        setPalette(QPalette(Qt::black, Qt::white));
        auto *layout = new QVBoxLayout(this);
        for (const QString &line : lines) {
            auto *label = new QLabel(line, this);
            QFont font(u"Noto Sans CJK KR"_s);
            font.setPixelSize(28);
            label->setFont(font);
            layout->addWidget(label);
        }
        setFixedSize(size);
        // WM_CLASS "instance\0class\0", set before the window is shown.
        const QByteArray classes = application.toLower() + '\0' + application + '\0';
        xcb_change_property(qtConnection(), XCB_PROP_MODE_REPLACE, xcb_window_t(winId()), XCB_ATOM_WM_CLASS,
                            XCB_ATOM_STRING, 8, uint32_t(classes.size()), classes.constData());
    }

    // Shown at the place, painted, and the painting done by the server.
    void showAt(QPoint place)
    {
        move(place);
        show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(this));
        QCoreApplication::processEvents();
        repaint();
        free(xcb_get_input_focus_reply(qtConnection(), xcb_get_input_focus(qtConnection()), nullptr));
    }
};

class WindowSourceTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        if (!qtConnection())
            GTEST_SKIP() << "needs an X display (xvfb-run)";
    }

    // A started source over this display; the windows come after start, as in class.
    std::unique_ptr<WindowSource> started(const QString &app, const QStringList &languages = {u"en-US"_s})
    {
        auto source = std::make_unique<WindowSource>(app, languages, WindowSource::x11());
        EXPECT_EQ(source->start(), std::nullopt);
        return source;
    }
};

TEST_F(WindowSourceTest, ReadsEnglishAndKoreanCaptionsExactly)
{
    const auto source = started(u"LiveCaptions"_s, {u"ko-KR"_s, u"en-US"_s, u"ko-KR"_s});
    EXPECT_EQ(source->languages(), (QStringList{u"ko-KR"_s, u"en-US"_s}));
    EXPECT_EQ(source->read(), QString()) << "no window yet";
    const QStringList lines{u"The exam covers chapters three to five."_s, u"시험 범위는 3장부터 5장까지입니다."_s};
    CaptionWindow captions("LiveCaptions", lines, {900, 200});
    captions.showAt({0, 0});
    EXPECT_EQ(source->read(), lines.join(u'\n'));
}

TEST_F(WindowSourceTest, ReadsEveryLargeEnoughWindowOfTheApplicationInAnyCase)
{
    const auto source = started(u"LIVECAP"_s);
    CaptionWindow back("LiveCaptions", {u"First window"_s}, {400, 200});
    CaptionWindow front("LiveCaptions", {u"Second window"_s, u"with two lines"_s}, {400, 250});
    CaptionWindow narrow("LiveCaptions", {u"Too narrow"_s}, {249, 600});
    CaptionWindow low("LiveCaptions", {u"Too low"_s}, {600, 199});
    CaptionWindow other("Browser", {u"Not captions"_s}, {600, 300});
    back.showAt({0, 0});
    front.showAt({500, 0});
    narrow.showAt({0, 300});
    low.showAt({300, 300});
    other.showAt({0, 700});
    EXPECT_EQ(source->read(), u"Second window\nwith two lines\nFirst window"_s) << "front window first";
    EXPECT_EQ(source->read(), u"Second window\nwith two lines\nFirst window"_s) << "each read a fresh look";

    // Covered by another application's window, a window still reads as itself.
    other.move(0, 0);
    other.raise();
    other.showAt({0, 0});
    EXPECT_EQ(source->read(), u"Second window\nwith two lines\nFirst window"_s);
}

TEST_F(WindowSourceTest, WindowsThatGoOrCannotBeReadGiveLessNotAFailure)
{
    // Closed between the listing and the capture: left out.
    auto closing = std::make_unique<CaptionWindow>("Captions", QStringList{u"Gone soon"_s}, QSize(400, 200));
    CaptionWindow staying("Captions", {u"Still here"_s}, {400, 200});
    WindowSource::Platform platform = WindowSource::x11();
    platform.openCapture = [&closing] {
        auto opened = X11WindowCapture::open();
        class Closing final : public WindowCapture
        {
        public:
            Closing(std::unique_ptr<WindowCapture> capture, std::unique_ptr<CaptionWindow> &window)
                : capture_(std::move(capture)), window_(window) {}
            QList<Window> windows() override { return capture_->windows(); }
            std::optional<QImage> capture(const Window &window, QSize size) override
            {
                window_.reset();
                free(xcb_get_input_focus_reply(qtConnection(), xcb_get_input_focus(qtConnection()), nullptr));
                return capture_->capture(window, size);
            }

        private:
            std::unique_ptr<WindowCapture> capture_;
            std::unique_ptr<CaptionWindow> &window_;
        };
        return WindowCapture::Opened(std::make_unique<Closing>(std::move(std::get<0>(opened)), closing));
    };
    WindowSource source(u"captions"_s, {u"en-US"_s}, platform);
    ASSERT_EQ(source.start(), std::nullopt);
    staying.showAt({0, 0});
    closing->showAt({500, 0});
    EXPECT_EQ(source.read(), u"Still here"_s);

    // A window larger than any screen is left out rather than read for ever.
    const auto huge = started(u"captions"_s);
    CaptionWindow giant("Captions", {u"Giant"_s}, {8'000, 8'000});
    giant.showAt({0, 0});
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(huge->read(), u"Still here"_s);
    EXPECT_LT(timer.elapsed(), 5'000);
}

TEST_F(WindowSourceTest, ADisplayThatIsMissingOrGoesAwayIsWordedOrEmpty)
{
    const QString noDisplay = u"读不到其他应用的窗口：打不开 X 显示。请在 X11 会话中运行 Quillet，然后重新打开它；Wayland 会话里只能读取经 XWayland 显示的窗口"_s;
    WindowSource missing(u"captions"_s, {u"en-US"_s}, {[] { return X11WindowCapture::open(u":987"_s); }, WindowSource::x11().makeReader});
    EXPECT_EQ(missing.start(), noDisplay);
    EXPECT_EQ(missing.read(), QString());

    // A display of its own, which says its number once it listens.
    QProcess server;
    server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"640x480x24"_s, u"-nolisten"_s, u"tcp"_s});
    QByteArray number;
    while (!number.endsWith('\n') && server.waitForReadyRead(10'000))
        number += server.readAllStandardOutput();
    ASSERT_FALSE(number.trimmed().isEmpty());
    const QString display = u':' + QString::fromLatin1(number.trimmed());
    WindowSource going(u"captions"_s, {u"en-US"_s}, {[display] { return X11WindowCapture::open(display); }, WindowSource::x11().makeReader});
    ASSERT_EQ(going.start(), std::nullopt);
    EXPECT_EQ(going.read(), QString());
    server.terminate();
    ASSERT_TRUE(server.waitForFinished());
    EXPECT_EQ(going.read(), QString());
    EXPECT_EQ(going.read(), QString());
}

} // namespace
