// The main window's arrangement: the modules whose placement is there, arranged as the engine's
// settings say.
#pragma once

#include "Shell/Panels/ModuleArrangementLink.h"

namespace TarvaneApp {

class MeterEngine;

class MainWindowArrangement final : public ModuleArrangementLink {
    Q_OBJECT
  public:
    explicit MainWindowArrangement(MeterEngine& engine, QObject* parent = nullptr);

    ModuleArrangement arrangement() const override;
    void setPanelLayout(PanelLayout layout) override;
    void setSplitFraction(double fraction) override;

  private:
    MeterEngine& engine_;
};

}  // namespace TarvaneApp
