// The settings store lies under the engine.
#include "Persistence.h"
#ifdef FORBIDDEN
#include "MeterEngine.h"
#endif
