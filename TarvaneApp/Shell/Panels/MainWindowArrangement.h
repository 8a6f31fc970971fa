// The main window's arrangement: the modules whose placement is there, arranged as the
// settings say.
#pragma once

#include "Shell/Panels/ModuleArrangementLink.h"

namespace TarvaneApp {

class MeterSettings;

class MainWindowArrangement final : public ModuleArrangementLink {
    Q_OBJECT
  public:
    explicit MainWindowArrangement(MeterSettings& settings, QObject* parent = nullptr);

    ModuleArrangement arrangement() const override;
    void setPanelLayout(PanelLayout layout) override;
    void setSplitFraction(double fraction) override;

  private:
    MeterSettings& settings_;
};

}  // namespace TarvaneApp
