// The settings window: one tab per form. It opens on the tab that was used last.
#pragma once

#include <QWidget>

#include "Shell/Preferences/TextFieldStore.h"

class QTabWidget;

namespace TarvaneApp {

class KeyValueStore;
class MeterEngine;
class ProfileStore;

class PreferencesWindow final : public QWidget {
    Q_OBJECT
  public:
    /// All of them outlive the window; `store` keeps which tab is open.
    PreferencesWindow(MeterEngine& engine, ProfileStore& profiles, KeyValueStore& store);

    /// Brings the profiles' tab to the front.
    void showProfiles();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* addTab(const QString& title, const QString& symbol, QWidget* form);
    void addTabKeys();
    void turnTo(int tab);
    void restoreTab();

    KeyValueStore& store_;
    TextFieldStore texts_;
    QTabWidget* tabs_;
    QWidget* profilesTab_;
};

}  // namespace TarvaneApp
