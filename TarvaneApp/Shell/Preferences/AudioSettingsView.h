// Preferences, Audio: which device and inputs feed the main input.
#pragma once

#include <QWidget>

class QFormLayout;

namespace TarvaneApp {

class MeterEngine;

class AudioSettingsView final : public QWidget {
    Q_OBJECT
  public:
    explicit AudioSettingsView(MeterEngine& engine, QWidget* parent = nullptr);

  private:
    void addSourceRows(QFormLayout& rows);
    void addStereoPairRows(QFormLayout& rows);
    QWidget* makeRestartRow();

    MeterEngine& engine_;
};

}  // namespace TarvaneApp
