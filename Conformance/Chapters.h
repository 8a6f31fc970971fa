// The chapters of the report, each with its own source of that name. A chapter makes its signals,
// feeds them to the library and returns what was read; all of them may run at once.
#pragma once

#include "Report.h"

namespace TarvaneConformance {

// IEC 61672-1:2013.
Chapter frequencyWeightings();
Chapter timeWeightings();
Chapter tonebursts();
Chapter levelLinearity();
Chapter peaksAndOverload();
// IEC 61260-1:2014.
Chapter octaveBands();
// EBU Tech 3341 and 3342.
Chapter programmeLoudness();
Chapter truePeak();
Chapter loudnessRange();

}  // namespace TarvaneConformance
