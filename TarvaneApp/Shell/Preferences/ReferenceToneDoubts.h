// What speaks against calibrating on what a channel hears right now: sentences for the user, who
// decides. The rule of the tone itself is ReferenceTone's.
#pragma once

#include <QStringList>

#include "DSP/Weighting.h"
#include "Metrics/ReferenceTone.h"
#include "Records/DisplayEnums.h"

namespace TarvaneApp {

struct HeardTone {
    TarvaneKit::ReferenceTone tone;
    /// What the channel's meter is set to: it is this that is held against the tone's level.
    MetricMode metric = MetricMode::spl;
    TarvaneKit::Weighting weighting = TarvaneKit::Weighting::z;
    bool isClipping = false;
};

/// Empty where all is well.
QStringList referenceToneDoubts(const HeardTone& heard);

}  // namespace TarvaneApp
