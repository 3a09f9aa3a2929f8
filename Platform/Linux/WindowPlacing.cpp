#include "Platform/WindowPlacing.h"
#include <QGuiApplication>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

template <class Reply> std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply)
{
    return {reply, &std::free};
}

// A compositing manager owns this selection of the X screen that it blends; windows here stand on the first one.
bool hasCompositingManager(xcb_connection_t *connection)
{
    constexpr QByteArrayView name{"_NET_WM_CM_S0"};
    const auto request = xcb_intern_atom(connection, 1, static_cast<quint16>(name.size()), name.data());
    const auto atom = owned(xcb_intern_atom_reply(connection, request, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const auto ownerRequest = xcb_get_selection_owner(connection, atom->atom);
    const auto owner = owned(xcb_get_selection_owner_reply(connection, ownerRequest, nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool platform::canPlaceWindows()
{
    return !QGuiApplication::platformName().startsWith("wayland"_L1);
}

bool platform::blendsWindows()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 != nullptr && x11->connection() != nullptr && hasCompositingManager(x11->connection());
}
