// The modules of the main window, arranged: the sound level meter above the graph area. A module
// that is hidden or elsewhere leaves its room to the others.
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
    QWidget* divider_;
    QWidget* graphs_;
};

}  // namespace TarvaneApp
