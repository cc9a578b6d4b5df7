// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/ui/raisewindow.h"

#include "platform/ui/activationtoken.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QThread>
#include <QWidget>
#include <QWindow>

#ifdef ZELVANE_XCB
#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <xcb/xcb.h>
#endif

namespace zelvane
{

#ifdef ZELVANE_XCB

namespace
{

xcb_connection_t *X11Connection()
{
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t X11Atom(xcb_connection_t *connection, const char *name)
{
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(
        connection, xcb_intern_atom(connection, false, quint16(std::strlen(name)), name), nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    std::free(reply);
    return atom;
}

/// Asks the window manager for something about a window, in the form that it expects of other programs.
void AskX11Manager(xcb_connection_t *connection, xcb_window_t window, const char *what,
                   const std::array<quint32, 4> &data)
{
    const xcb_atom_t message = X11Atom(connection, what);
    xcb_get_geometry_reply_t *geometry =
        xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr);
    if (message != XCB_ATOM_NONE && geometry) {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = message;
        std::copy(data.begin(), data.end(), event.data.data32);
        xcb_send_event(connection, false, geometry->root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char *>(&event));
        xcb_flush(connection);
    }
    std::free(geometry);
}

/// The toolkit asks with the time of the last event it saw, which may be long ago: a window manager that
/// guards the focus then only marks the task bar. Source 2 says that the user asked.
void ActivateX11Window(xcb_connection_t *connection, xcb_window_t window)
{
    AskX11Manager(connection, window, "_NET_ACTIVE_WINDOW", {2, XCB_CURRENT_TIME});
}

/// Many window managers know an owner only when it is shown, and put a new window above all others: the owned
/// window is kept above them until then.
void TellX11Owner(xcb_connection_t *connection, xcb_window_t window, xcb_window_t owner, bool isShown)
{
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW,
                        32, 1, &owner);
    const quint32 addOrRemove = isShown ? 0 : 1;
    AskX11Manager(connection, window, "_NET_WM_STATE",
                  {addOrRemove, X11Atom(connection, "_NET_WM_STATE_ABOVE"), 0, 1});
}

} // namespace

#endif

void RaiseWindow(QWidget &window)
{
    if (window.isMinimized())
        window.setWindowState((window.windowState() & ~Qt::WindowMinimized) | Qt::WindowActive);
    window.show();
    window.raise();
    // A dialog that waits for an answer takes the keyboard, or its question would seem to have gone.
    QWidget *dialog = QApplication::activeModalWidget();
    QWidget &active = dialog ? *dialog : window;
    if (dialog)
        dialog->raise();
    active.activateWindow();
#ifdef ZELVANE_XCB
    if (xcb_connection_t *connection = X11Connection())
        ActivateX11Window(connection, xcb_window_t(active.winId()));
#endif
    ForgetActivationToken();
}

void KeepAbove(QWidget &window, QWidget &owner)
{
    owner.winId(); // makes the native window, which may not be shown yet
    window.winId();
    window.windowHandle()->setTransientParent(owner.windowHandle());
    if (!window.isVisible())
        return; // it is told with the next show
#ifdef ZELVANE_XCB
    if (xcb_connection_t *connection = X11Connection()) {
        TellX11Owner(connection, xcb_window_t(window.winId()), xcb_window_t(owner.winId()),
                     owner.isVisible());
        return;
    }
#endif
    if (owner.isVisible()) {
        window.hide();
        window.show();
    }
}

void PaintOnScreen(QWidget &window)
{
    constexpr int wait = 500;
    constexpr int look = 5;
    const QWindow *shown = window.windowHandle();
    for (const QDeadlineTimer deadline(wait); shown && !shown->isExposed() && !deadline.hasExpired();) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
        QThread::msleep(look);
    }
    window.repaint();
    QGuiApplication::sync();
}

void FlushWindowSystem()
{
#ifdef ZELVANE_XCB
    if (xcb_connection_t *connection = X11Connection())
        xcb_flush(connection);
#endif
}

} // namespace zelvane
