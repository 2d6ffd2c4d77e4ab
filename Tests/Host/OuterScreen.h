#pragma once

#include <QtGui/QColor>
#include <QtGui/QImage>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

/**
 * What a user sees of a Wayland session that is nested in an X server: Wayland shows an application nothing
 * but its own windows. The server's screen and the session's are one, so places are the same in both.
 */
namespace OuterScreen {

/** Returns the screen's picture; a null one when it cannot be had. */
inline QImage grab()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(xcb_connect(nullptr, nullptr),
                                                                              &xcb_disconnect);
    if (xcb_connection_has_error(server.get()))
        return {};
    const xcb_screen_t *const screen = xcb_setup_roots_iterator(xcb_get_setup(server.get())).data;
    const int width = screen->width_in_pixels;
    const int height = screen->height_in_pixels;
    const xcb_get_image_cookie_t asked =
        xcb_get_image(server.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen->root, 0, 0, width, height, ~0U);
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&free)> image(
        xcb_get_image_reply(server.get(), asked, nullptr), &free);
    if (!image || xcb_get_image_data_length(image.get()) != width * height * 4)
        return {};
    // The high byte is nobody's there.
    return QImage(xcb_get_image_data(image.get()), width, height, QImage::Format_RGB32)
        .convertToFormat(QImage::Format_RGB888);
}

/** Returns the size of a window in the server's pixels; an empty one when there is no such window. */
inline QSize sizeOf(xcb_window_t window)
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> server(xcb_connect(nullptr, nullptr),
                                                                              &xcb_disconnect);
    const std::unique_ptr<xcb_get_geometry_reply_t, decltype(&free)> geometry(
        xcb_get_geometry_reply(server.get(), xcb_get_geometry(server.get(), window), nullptr), &free);
    return geometry ? QSize(geometry->width, geometry->height) : QSize();
}

/** Returns the smallest rectangle around everything of that colour on the screen; null when there is nothing.
 */
inline QRect find(const QColor &color)
{
    const QImage screen = grab().convertToFormat(QImage::Format_RGB32);
    int left = screen.width(), right = -1, top = screen.height(), bottom = -1;
    for (int y = 0; y < screen.height(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(screen.constScanLine(y));
        for (int x = 0; x < screen.width(); ++x) {
            if (line[x] != color.rgb())
                continue;
            left = qMin(left, x);
            right = qMax(right, x);
            top = qMin(top, y);
            bottom = qMax(bottom, y);
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

/** Leaves a picture of the screen in the folder that VIDTIPS_PICTURES names, if it does. */
inline void picture(const QString &name)
{
    const QString folder = qEnvironmentVariable("VIDTIPS_PICTURES");
    if (!folder.isEmpty() && !grab().save(folder + '/' + name + ".png"))
        qWarning("there is no picture of %s", qPrintable(name));
}

} // namespace OuterScreen
