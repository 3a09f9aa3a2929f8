#include "Platform/Linux/XWindowPlace.h"

#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

template <class T> using Reply = std::unique_ptr<T, Free>;

} // namespace

QRect placeOnDisplay(const QWidget &window)
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11 || !window.internalWinId())
        return {};
    auto *connection = x11->connection();
    const auto id = static_cast<xcb_window_t>(window.internalWinId());
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto geometryCookie = xcb_get_geometry(connection, id);
    const auto attributesCookie = xcb_get_window_attributes(connection, id);
    const auto placeCookie = xcb_translate_coordinates(connection, id, root, 0, 0);
    const Reply<xcb_get_geometry_reply_t> geometry(xcb_get_geometry_reply(connection, geometryCookie, nullptr));
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, attributesCookie, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> place(
        xcb_translate_coordinates_reply(connection, placeCookie, nullptr));
    if (!geometry || !attributes || !place || attributes->map_state != XCB_MAP_STATE_VIEWABLE)
        return {};
    const double ratio = window.devicePixelRatio();
    return QRectF(place->dst_x / ratio, place->dst_y / ratio, geometry->width / ratio, geometry->height / ratio)
        .toRect();
}
