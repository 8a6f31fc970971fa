// A saved profile in the list of them: its name, when it was saved, whether it is the one in use,
// and what can be done with it.
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace TarvaneApp {

class ElidedLabel;
class IconMenuButton;
class MeterEngine;
class ProfileStore;
struct SettingsProfile;

class ProfileRow final : public QWidget {
    Q_OBJECT
  public:
    /// `place` is the profile's in the store's list, which may be another one at each look.
    ProfileRow(MeterEngine& engine, ProfileStore& profiles, int place, QWidget* parent = nullptr);

    /// Shows what stands at the place now.
    void showProfile();

  private:
    /// A copy: what is done with it may change the list.
    SettingsProfile profile() const;
    void confirmDelete();

    MeterEngine& engine_;
    ProfileStore& profiles_;
    const std::size_t place_;
    QLabel* current_;
    ElidedLabel* name_;
    QLabel* saved_;
    QPushButton* load_;
    IconMenuButton* more_;
};

}  // namespace TarvaneApp
