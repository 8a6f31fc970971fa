// The settings window: one tab per form.
#pragma once

#include <QWidget>

class QTabWidget;

namespace TarvaneApp {

class MeterEngine;
class ProfileStore;

class PreferencesWindow final : public QWidget {
    Q_OBJECT
  public:
    PreferencesWindow(MeterEngine& engine, ProfileStore& profiles);

    /// Brings the profiles' tab to the front.
    void showProfiles();

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* addTab(const QString& title, const QString& symbol, QWidget* form);

    QTabWidget* tabs_;
    QWidget* profilesTab_;
};

}  // namespace TarvaneApp
