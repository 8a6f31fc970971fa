// Offers a restart while a channel is set to another source than it is read from.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class MeterEngine;

class RestartRow final : public QWidget {
    Q_OBJECT
  public:
    explicit RestartRow(MeterEngine& engine, QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
