// The sound level meter over a whole screen, for the second one on stage: number, name and the
// colour of its limits, or the clock in its place. Esc and F11 end it; Space and P work in it. It
// deletes itself. Main thread.
#pragma once

#include <QWidget>
#include <optional>

#include "Core/UUID.h"

namespace TarvaneApp {

class MeterEngine;

class StageWindow final : public QWidget {
    Q_OBJECT
  public:
    /// Shows the fixed channel, or without one the sound level meter's.
    StageWindow(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& fixedChannelID);

    const std::optional<TarvaneKit::UUID>& fixedChannelID() const { return fixedChannelID_; }

    /// Covers that screen.
    void cover(QScreen& screen);

  private:
    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> fixedChannelID_;
};

}  // namespace TarvaneApp
