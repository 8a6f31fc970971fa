// The analysis library knows nothing of the application above it.
#include "Calibration/CalibrationProfile.h"
#ifdef FORBIDDEN
#include "Engine/MeterEngine.h"
#endif
