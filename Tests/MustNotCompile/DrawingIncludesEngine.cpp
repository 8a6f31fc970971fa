// What a display draws comes in a value record; it never asks the engine.
#include "Readouts/SPLReadoutView.h"
#ifdef FORBIDDEN
#include "MeterEngine.h"
#endif
