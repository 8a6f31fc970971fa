// The settings window: one tab per form. It opens on the tab that was used last.
#pragma once

#include <QWidget>
#include <functional>

#include "Core/UUID.h"
#include "Shell/Preferences/TextFieldStore.h"

class QTabWidget;

namespace TarvaneApp {

class KeyValueStore;
class MeterEngine;
class ProfileStore;

class PreferencesWindow final : public QWidget {
    Q_OBJECT
  public:
    /// All of it outlives the window.
    struct Environment {
        MeterEngine& engine;
        ProfileStore& profiles;
        /// Keeps what is open: the tab, the channels' groups.
        KeyValueStore& store;
        /// Brings up a channel in a window of its own.
        std::function<void(const TarvaneKit::UUID&)> openChannelWindow;
    };
    explicit PreferencesWindow(const Environment& environment);

    /// Brings the profiles' tab to the front.
    void showProfiles();

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    /// `head` stays above the form while that is scrolled.
    QWidget* addTab(const QString& title, const QString& symbol, QWidget* form,
                    QWidget* head = nullptr);
    void addTabKeys();
    void turnTo(int tab);
    void restoreTab();

    KeyValueStore& store_;
    TextFieldStore texts_;
    QTabWidget* tabs_;
    QWidget* profilesTab_;
};

}  // namespace TarvaneApp
