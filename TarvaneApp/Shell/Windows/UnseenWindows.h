// Windows of which the window system shows nothing: covered by others, minimised, or on another
// desktop. Their updates are off, so that nothing in them is painted, and the displays let go of
// what they have computed. They are painted whole when they are seen again.
//
// Wayland's compositor asks a window that isn't seen for no pictures, of which Qt makes an expose
// event. An X server tells of a window that is covered, unless a compositor holds all windows in
// pictures of their own: then a covered window costs what it always costs.
//
// One for the application, on the main thread.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QSet>
#include <QWindow>

namespace TarvaneApp {

class UnseenWindows final : public QObject, public QAbstractNativeEventFilter {
  public:
    /// Windows that are made from now on are looked after.
    UnseenWindows();
    ~UnseenWindows() override;

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

  private:
    void surfaceMade(const QWindow& window);
    void look(const QWindow& window);

    QSet<WId> covered_;  ///< as the X server told
};

}  // namespace TarvaneApp
