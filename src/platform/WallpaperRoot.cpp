#include "platform/WallpaperRoot.h"

#include "platform/Reason.h"
#include "platform/RootImage.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

namespace quorvia::platform {

namespace {

struct Disconnect
{
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

struct Free
{
    void operator()(void* answer) const { std::free(answer); }
};
template <class T>
using Answer = std::unique_ptr<T, Free>;

xcb_screen_t* screenOf(xcb_connection_t* connection, int number)
{
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (; screens.rem > 1 && number > 0; --number)
        xcb_screen_next(&screens);
    return screens.data;
}

const xcb_visualtype_t* visualOf(const xcb_screen_t& screen)
{
    for (auto depths = xcb_screen_allowed_depths_iterator(&screen); depths.rem; xcb_depth_next(&depths)) {
        for (auto visuals = xcb_depth_visuals_iterator(depths.data); visuals.rem;
             xcb_visualtype_next(&visuals)) {
            if (visuals.data->visual_id == screen.root_visual)
                return visuals.data;
        }
    }
    return nullptr;
}

int bitsPerPixel(const xcb_setup_t* setup, int depth)
{
    for (auto formats = xcb_setup_pixmap_formats_iterator(setup); formats.rem; xcb_format_next(&formats)) {
        if (formats.data->depth == depth)
            return formats.data->bits_per_pixel;
    }
    return 0;
}

/// True when the root window has pixels as an RGB32 image has them on this machine.
bool takesOurPixels(const xcb_setup_t* setup, const xcb_screen_t& screen)
{
    constexpr auto ownOrder =
        Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? XCB_IMAGE_ORDER_LSB_FIRST : XCB_IMAGE_ORDER_MSB_FIRST;
    const xcb_visualtype_t* const visual = visualOf(screen);
    return (screen.root_depth == 24 || screen.root_depth == 32) &&
           bitsPerPixel(setup, screen.root_depth) == 32 && setup->image_byte_order == ownOrder && visual &&
           visual->red_mask == 0xff0000 && visual->green_mask == 0xff00 && visual->blue_mask == 0xff;
}

/// Sends the image to a new pixmap; 0 when the server does not take it.
xcb_pixmap_t upload(xcb_connection_t* connection, const xcb_screen_t& screen, const QImage& image)
{
    const int rows =
        rowsPerRequest(qint64(xcb_get_maximum_request_length(connection)) * 4, image.bytesPerLine());
    if (rows == 0)
        return 0;
    const xcb_pixmap_t pixmap = xcb_generate_id(connection);
    const xcb_gcontext_t context = xcb_generate_id(connection);
    const Answer<xcb_generic_error_t> refused(xcb_request_check(
        connection, xcb_create_pixmap_checked(connection, screen.root_depth, pixmap, screen.root,
                                              uint16_t(image.width()), uint16_t(image.height()))));
    if (refused)
        return 0;
    xcb_create_gc(connection, context, pixmap, 0, nullptr);
    for (int row = 0; row < image.height(); row += rows) {
        const int count = std::min(rows, image.height() - row);
        xcb_put_image(connection, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, uint16_t(image.width()),
                      uint16_t(count), 0, int16_t(row), 0, screen.root_depth,
                      uint32_t(image.bytesPerLine() * count), image.constScanLine(row));
    }
    // What the connection leaves behind stays in the server: the pixmap alone.
    const Answer<xcb_generic_error_t> lost(
        xcb_request_check(connection, xcb_free_gc_checked(connection, context)));
    return lost || xcb_connection_has_error(connection) ? 0 : pixmap;
}

xcb_atom_t atomOf(xcb_connection_t* connection, const char* name)
{
    const auto cookie = xcb_intern_atom(connection, 0, uint16_t(std::strlen(name)), name);
    const Answer<xcb_intern_atom_reply_t> answer(xcb_intern_atom_reply(connection, cookie, nullptr));
    return answer ? answer->atom : xcb_atom_t(XCB_ATOM_NONE);
}

/// The pixmap that a property of the root window names; 0 when it names none.
xcb_pixmap_t namedPixmap(xcb_connection_t* connection, xcb_window_t root, xcb_atom_t property)
{
    const auto cookie = xcb_get_property(connection, 0, root, property, XCB_ATOM_PIXMAP, 0, 1);
    const Answer<xcb_get_property_reply_t> answer(xcb_get_property_reply(connection, cookie, nullptr));
    if (!answer || answer->type != XCB_ATOM_PIXMAP || answer->format != 32 || answer->value_len != 1)
        return 0;
    return *static_cast<const xcb_pixmap_t*>(xcb_get_property_value(answer.get()));
}

/// Puts `pixmap` behind the root window and frees what was there before.
void show(xcb_connection_t* connection, xcb_window_t root, xcb_pixmap_t pixmap)
{
    const xcb_atom_t names[] = {atomOf(connection, "_XROOTPMAP_ID"), atomOf(connection, "ESETROOT_PMAP_ID")};
    xcb_grab_server(connection); // or another one who sets the root would free the same pixmap
    const xcb_pixmap_t former = namedPixmap(connection, root, names[0]);
    const bool isLeftBehind = former && former == namedPixmap(connection, root, names[1]);
    xcb_set_close_down_mode(connection, XCB_CLOSE_DOWN_RETAIN_PERMANENT);
    for (const xcb_atom_t name : names)
        xcb_change_property(connection, XCB_PROP_MODE_REPLACE, root, name, XCB_ATOM_PIXMAP, 32, 1, &pixmap);
    xcb_change_window_attributes(connection, root, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(connection, 0, root, 0, 0, 0, 0);
    // Both names for one pixmap: its program left it there on purpose and is gone. With one name alone it may
    // belong to a program that runs, which this would end.
    if (isLeftBehind)
        xcb_kill_client(connection, former);
    xcb_ungrab_server(connection);
    const Answer<xcb_get_input_focus_reply_t> done( // waits until all of it has happened
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

} // namespace

bool setRootWallpaper(const QString& path, WallpaperStyle style, const QList<QRect>& screens,
                      const QByteArray& display, QString* why)
{
    QString reason;
    const QImage picture = wallpaperPicture(path, &reason);
    if (picture.isNull())
        return fail(why, reason);
    int number = 0;
    const Connection connection(xcb_connect(display.isEmpty() ? nullptr : display.constData(), &number));
    if (xcb_connection_has_error(connection.get()))
        return fail(why, QStringLiteral("the X server cannot be reached"));
    const xcb_screen_t& screen = *screenOf(connection.get(), number);
    if (!takesOurPixels(xcb_get_setup(connection.get()), screen))
        return fail(
            why,
            QStringLiteral("the root window has pixels of another kind (depth %1)").arg(screen.root_depth));
    const QImage image =
        rootImage(picture, QSize(screen.width_in_pixels, screen.height_in_pixels), screens, style);
    const xcb_pixmap_t pixmap = image.isNull() ? 0 : upload(connection.get(), screen, image);
    if (!pixmap)
        return fail(why, QStringLiteral("the X server does not take the picture"));
    show(connection.get(), screen.root, pixmap);
    return !xcb_connection_has_error(connection.get()) || fail(why, QStringLiteral("the X server has gone"));
}

} // namespace quorvia::platform
