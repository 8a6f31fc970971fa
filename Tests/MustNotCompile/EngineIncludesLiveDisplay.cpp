#include "Engine/MeterEngine.h"
#ifdef FORBIDDEN
#include "LiveDisplays/LiveBinding.h"
#endif
