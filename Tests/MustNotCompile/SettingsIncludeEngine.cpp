// The settings store lies under the engine.
#include "Settings/Persistence.h"
#ifdef FORBIDDEN
#include "Engine/MeterEngine.h"
#endif
