// The modules of the main window, arranged: the sound level meter on top, below it the graph area,
// the level history as a strip above or below that. A module that is hidden or elsewhere leaves its
// room to the others.
#pragma once

#include <QWidget>

class QVBoxLayout;

namespace TarvaneApp {

class MeterEngine;

class ModuleLayoutView final : public QWidget {
    Q_OBJECT
  public:
    explicit ModuleLayoutView(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void arrange();

    MeterEngine& engine_;
    QVBoxLayout* column_;
    QWidget* meter_;
    QWidget* meterDivider_;
    QWidget* history_;
    QWidget* historyDivider_;
    QWidget* graphs_;
};

}  // namespace TarvaneApp
