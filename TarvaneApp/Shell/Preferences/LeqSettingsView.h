// Preferences, Leq: weighting and length of the user's own Leq.
#pragma once

#include "Shell/Forms/Form.h"

namespace TarvaneApp {

class MeterEngine;

class LeqSettingsView final : public Form {
    Q_OBJECT
  public:
    explicit LeqSettingsView(MeterEngine& engine, QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
