// Preferences, Leq: weighting and length of the user's own Leq.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class MeterEngine;

class LeqSettingsView final : public QWidget {
    Q_OBJECT
  public:
    explicit LeqSettingsView(MeterEngine& engine, QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
