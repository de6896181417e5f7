#include "platform/X11WindowCapture.h"

#include <QFile>

#include <xcb/composite.h>
#include <xcb/xcb.h>

#include <cstdlib>

namespace {

// A window manager nests a client at most a frame or two below the root.
constexpr int depthAtMost = 3;

template <typename Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply>
Owned<Reply> owned(Reply *reply)
{
    return Owned<Reply>(reply, &std::free);
}

QString noDisplay(const QString &why)
{
    return u"读不到其他应用的窗口：" + why
           + u"。请在 X11 会话中运行 Quillet，然后重新打开它；Wayland 会话里只能读取经 XWayland 显示的窗口";
}

} // namespace

void X11WindowCapture::Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

X11WindowCapture::X11WindowCapture(std::unique_ptr<xcb_connection_t, Disconnect> connection, quint32 root,
                                   quint32 processAtom)
    : connection_(std::move(connection))
    , root_(root)
    , processAtom_(processAtom)
{
}

X11WindowCapture::~X11WindowCapture() = default;

WindowCapture::Opened X11WindowCapture::open(const QString &display)
{
    int screenNumber = 0;
    std::unique_ptr<xcb_connection_t, Disconnect> connection(
        xcb_connect(display.isEmpty() ? nullptr : display.toLocal8Bit().constData(), &screenNumber));
    if (xcb_connection_has_error(connection.get()))
        return noDisplay(QStringLiteral(u"打不开 X 显示"));
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection.get()));
    for (int i = 0; i < screenNumber && screens.rem > 0; ++i)
        xcb_screen_next(&screens);
    if (screens.rem == 0)
        return noDisplay(QStringLiteral(u"打不开 X 显示"));
    const xcb_window_t root = screens.data->root;

    const xcb_query_extension_reply_t *composite = xcb_get_extension_data(connection.get(), &xcb_composite_id);
    const auto version = owned(xcb_composite_query_version_reply(
        connection.get(), xcb_composite_query_version(connection.get(), 0, 2), nullptr));
    if (!composite || !composite->present || !version || (version->major_version == 0 && version->minor_version < 2))
        return noDisplay(QStringLiteral(u"X 服务器没有 Composite 扩展"));
    if (auto error = owned(xcb_request_check(connection.get(), xcb_composite_redirect_subwindows_checked(
                                                                   connection.get(), root, XCB_COMPOSITE_REDIRECT_AUTOMATIC))))
        return noDisplay(QStringLiteral(u"X 服务器不让读取窗口内容"));

    const char name[] = "_NET_WM_PID";
    const auto atom = owned(xcb_intern_atom_reply(
        connection.get(), xcb_intern_atom(connection.get(), 0, sizeof name - 1, name), nullptr));
    const quint32 processAtom = atom ? atom->atom : quint32(XCB_ATOM_NONE);
    return std::unique_ptr<WindowCapture>(new X11WindowCapture(std::move(connection), root, processAtom));
}

QList<WindowCapture::Window> X11WindowCapture::windows()
{
    topLevels_.clear();
    QList<Window> windows;
    collect(root_, XCB_WINDOW_NONE, 0, windows);
    return windows;
}

void X11WindowCapture::collect(quint32 window, quint32 topLevel, int depth, QList<Window> &windows)
{
    if (xcb_connection_has_error(connection_.get()))
        return;
    if (depth > 0) {
        if (const auto application = applicationOf(window)) {
            const auto geometry = owned(xcb_get_geometry_reply(connection_.get(), xcb_get_geometry(connection_.get(), window), nullptr));
            if (geometry) {
                windows.append({window, *application, QSize(geometry->width, geometry->height)});
                topLevels_.insert(window, topLevel);
            }
            return;
        }
    }
    if (depth >= depthAtMost)
        return;
    const auto tree = owned(xcb_query_tree_reply(connection_.get(), xcb_query_tree(connection_.get(), window), nullptr));
    if (!tree)
        return;
    // The server lists children bottom to top; the front window comes first here.
    const xcb_window_t *children = xcb_query_tree_children(tree.get());
    for (int i = xcb_query_tree_children_length(tree.get()) - 1; i >= 0; --i)
        collect(children[i], depth == 0 ? children[i] : topLevel, depth + 1, windows);
}

std::optional<QString> X11WindowCapture::applicationOf(quint32 window)
{
    const auto classes = owned(xcb_get_property_reply(
        connection_.get(), xcb_get_property(connection_.get(), 0, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 0, 256),
        nullptr));
    if (classes && xcb_get_property_value_length(classes.get()) > 0) {
        // "instance\0class\0"
        const QByteArray value(static_cast<const char *>(xcb_get_property_value(classes.get())),
                               xcb_get_property_value_length(classes.get()));
        const QList<QByteArray> names = value.split('\0');
        const QByteArray name = names.size() > 1 && !names[1].isEmpty() ? names[1] : names[0];
        if (!name.isEmpty())
            return QString::fromUtf8(name);
    }
    if (processAtom_ == XCB_ATOM_NONE)
        return std::nullopt;
    const auto process = owned(xcb_get_property_reply(
        connection_.get(), xcb_get_property(connection_.get(), 0, window, processAtom_, XCB_ATOM_CARDINAL, 0, 1), nullptr));
    if (!process || xcb_get_property_value_length(process.get()) != 4)
        return std::nullopt;
    const quint32 pid = *static_cast<const quint32 *>(xcb_get_property_value(process.get()));
    QFile comm(QStringLiteral("/proc/%1/comm").arg(pid));
    if (!comm.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QString name = QString::fromUtf8(comm.readAll().trimmed());
    return name.isEmpty() ? std::nullopt : std::optional(name);
}

std::optional<QImage> X11WindowCapture::capture(const Window &window, QSize size)
{
    if (xcb_connection_has_error(connection_.get()) || !topLevels_.contains(window.id))
        return std::nullopt;
    return contents(window.id, topLevels_.value(window.id), size);
}

std::optional<QImage> X11WindowCapture::contents(quint32 window, quint32 topLevel, QSize size)
{
    xcb_connection_t *connection = connection_.get();
    // Where the window's contents lie in its top-level window's picture, which includes the border.
    const auto frame = owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, topLevel), nullptr));
    const auto offset = owned(xcb_translate_coordinates_reply(
        connection, xcb_translate_coordinates(connection, window, topLevel, 0, 0), nullptr));
    const auto geometry = owned(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
    if (!frame || !offset || !geometry)
        return std::nullopt;

    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    if (owned(xcb_request_check(connection, xcb_composite_name_window_pixmap_checked(connection, topLevel, pixmap))))
        return std::nullopt;   // closed, or never shown
    const auto image = owned(xcb_get_image_reply(
        connection,
        xcb_get_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, int16_t(frame->border_width + offset->dst_x),
                      int16_t(frame->border_width + offset->dst_y), geometry->width, geometry->height, ~0U),
        nullptr));
    xcb_free_pixmap(connection, pixmap);
    xcb_flush(connection);
    const qsizetype bytes = qsizetype(geometry->width) * geometry->height * 4;
    if (!image || image->depth < 24 || xcb_get_image_data_length(image.get()) != bytes)
        return std::nullopt;   // a depth other than true colour at 32 bits per pixel isn't read
    // The picture borrows the reply's pixels: what is returned is always a copy of its own. Pixels
    // are repeated, not smoothed: Tesseract misreads large letters blurred by smoothing (measured
    // on Korean captions in a 28-pixel font at twice their size).
    const QImage picture(xcb_get_image_data(image.get()), geometry->width, geometry->height, geometry->width * 4,
                         QImage::Format_RGB32);
    return size == picture.size() ? picture.copy() : picture.scaled(size, Qt::IgnoreAspectRatio, Qt::FastTransformation);
}
