#include "Shell/Windows/UnseenWindows.h"

#include <xcb/xcb.h>

#include <QApplication>
#include <QPlatformSurfaceEvent>
#include <QWidget>
#include <cstdlib>
#include <memory>

namespace TarvaneApp {

namespace {

// The highest bit of a type says who sent the event.
constexpr std::uint8_t typeMask = 0x7F;

QWidget* widgetOf(const QWindow& window) {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->windowHandle() == &window) {
            return widget;
        }
    }
    return nullptr;
}

// Qt asks the X server for many kinds of event, and this one isn't among them.
void askForVisibility(xcb_connection_t* connection, xcb_window_t window) {
    const std::unique_ptr<xcb_get_window_attributes_reply_t, decltype(&std::free)> attributes(
        xcb_get_window_attributes_reply(connection, xcb_get_window_attributes(connection, window),
                                        nullptr),
        &std::free);
    if (attributes != nullptr) {
        const std::uint32_t events = attributes->your_event_mask | XCB_EVENT_MASK_VISIBILITY_CHANGE;
        xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
    }
}

}  // namespace

UnseenWindows::UnseenWindows() {
    qApp->installEventFilter(this);
    qApp->installNativeEventFilter(this);
}

UnseenWindows::~UnseenWindows() {
    qApp->removeNativeEventFilter(this);
}

bool UnseenWindows::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Expose || event->type() == QEvent::PlatformSurface) {
        if (const auto* window = qobject_cast<const QWindow*>(watched)) {
            if (event->type() == QEvent::Expose) {
                look(*window);
            } else if (static_cast<QPlatformSurfaceEvent*>(event)->surfaceEventType() ==
                       QPlatformSurfaceEvent::SurfaceCreated) {
                surfaceMade(*window);
            }
        }
    }
    return false;
}

// Menus and tooltips hold no displays, and are never covered for long.
void UnseenWindows::surfaceMade(const QWindow& window) {
    covered_.remove(window.winId());
    // Other platforms may have a connection, too, and windows that the server doesn't know.
    if (window.type() == Qt::Window && QGuiApplication::platformName() == QLatin1String("xcb")) {
        const auto* x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
        askForVisibility(x11->connection(), static_cast<xcb_window_t>(window.winId()));
    }
}

bool UnseenWindows::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType != "xcb_generic_event_t" ||
        (static_cast<xcb_generic_event_t*>(message)->response_type & typeMask) !=
            XCB_VISIBILITY_NOTIFY) {
        return false;
    }
    const auto& told = *static_cast<xcb_visibility_notify_event_t*>(message);
    if (told.state == XCB_VISIBILITY_FULLY_OBSCURED) {
        covered_.insert(told.window);
    } else {
        covered_.remove(told.window);
    }
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        if (window->handle() != nullptr && window->winId() == told.window) {
            look(*window);
        }
    }
    return false;
}

// A hidden window is left as it is: it may be shown again at any time.
void UnseenWindows::look(const QWindow& window) {
    QWidget* widget = widgetOf(window);
    if (widget != nullptr && widget->isVisible()) {
        widget->setUpdatesEnabled(window.isExposed() && !covered_.contains(window.winId()));
    }
}

}  // namespace TarvaneApp
