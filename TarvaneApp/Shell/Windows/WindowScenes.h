// The windows beside the main one, opened by name: a module's, a channel's, the meter's over a
// whole screen, help and what is read beside it. Each is where it was when the program was last
// used, and channel windows that were open come back. The application owns them; main thread.
#pragma once

#include <QList>
#include <QPointer>
#include <QWidget>
#include <string>

#include "Core/UUID.h"
#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

class ChannelWindowView;
class KeyValueStore;
class MeterEngine;

class WindowScenes final : public QObject {
    Q_OBJECT
  public:
    /// The keys of `actions` work in every window.
    WindowScenes(MeterEngine& engine, KeyValueStore& store, QList<QAction*> actions);
    ~WindowScenes() override;

    void openModule(StandaloneModule module);
    /// A channel has one window: where it is open already, it comes to the front.
    void openChannel(const TarvaneKit::UUID& channelID);
    /// There is one window of each: where it is open already, it comes to the front.
    void openHelp();
    void openReleaseNotes();
    void openAbout();
    /// The sound level meter over the whole screen of the window that the user is in, of that
    /// window's channel; in such a window, or where there is one already, its end.
    void toggleFullScreenMeter();
    /// Opens the channel windows that were open when the program was last used.
    void restoreChannels();

  private:
    void open(QWidget* window, const std::string& frameName);
    template <class Window>
    bool bringBack() const;
    ChannelWindowView* channelWindow(const TarvaneKit::UUID& channelID) const;
    void storeOpenChannels();

    MeterEngine& engine_;
    KeyValueStore& store_;
    const QList<QAction*> actions_;
    QList<QPointer<QWidget>> windows_;
};

}  // namespace TarvaneApp
