// What the tray icon tells at a glance of all channels together.
#pragma once

#include <QString>

namespace TarvaneApp {

class MeterEngine;

struct TrayState {
    enum class Kind { idle, running, paused, clip, ring };

    Kind kind = Kind::idle;
    /// The state in words, with the channel or device that it is about.
    QString toolTip;

    bool operator==(const TrayState&) const = default;

    /// A ring is what can hurt soonest, then a clip that is on right now.
    static TrayState of(const MeterEngine& engine);
};

}  // namespace TarvaneApp
