// Preferences, Profiles: whole setups that are saved, loaded, and carried to other machines.
#pragma once

#include "Shell/Forms/Form.h"

namespace TarvaneApp {

class MeterEngine;
class ProfileStore;

class ProfilesSettingsView final : public Form {
    Q_OBJECT
  public:
    ProfilesSettingsView(MeterEngine& engine, ProfileStore& profiles, QWidget* parent = nullptr);

  private:
    void addSavedProfiles();
    void addSaving();
    void addOptions();
    void showInFileManager();

    MeterEngine& engine_;
    ProfileStore& profiles_;
};

}  // namespace TarvaneApp
