// What the main input is fed from, as the toolbar tells it: the device's name behind a dot that
// shows whether it is metered. While nothing runs it is the device that a start would open.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class ElidedLabel;
class MeterEngine;

/// The main input as a whole: `lost` while the device that it should be fed from isn't there.
enum class InputState { idle, running, paused, lost };

InputState inputState(const MeterEngine& engine);

class MeteredInputLabel final : public QWidget {
    Q_OBJECT
  public:
    explicit MeteredInputLabel(MeterEngine& engine, QWidget* parent = nullptr);

    QString text() const;
    InputState state() const;

  private:
    class Dot;

    void showInput();

    MeterEngine& engine_;
    Dot* dot_;
    ElidedLabel* name_;
};

}  // namespace TarvaneApp
