// Shows the engine's error message to the user: one alert at a time, over the main window. It
// blocks nothing while it is open; dismissing it clears the message.
#pragma once

#include <QObject>
#include <QPointer>

class QMessageBox;
class QWidget;

namespace TarvaneApp {

class MeterEngine;

class ErrorAlert final : public QObject {
    Q_OBJECT
  public:
    /// `window` owns it.
    ErrorAlert(MeterEngine& engine, QWidget* window);

  private:
    void messageChanged();

    MeterEngine& engine_;
    QWidget* window_;
    QPointer<QMessageBox> box_;
};

}  // namespace TarvaneApp
