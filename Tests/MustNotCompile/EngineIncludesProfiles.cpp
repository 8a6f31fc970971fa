#include "Engine/MeterEngine.h"
#ifdef FORBIDDEN
#include "Profiles/ProfileStore.h"
#endif
