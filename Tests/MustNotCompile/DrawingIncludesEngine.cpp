// What a display draws comes in a value record; it never asks the engine.
#include "Displays/Readouts/SPLReadoutView.h"
#ifdef FORBIDDEN
#include "Engine/MeterEngine.h"
#endif
