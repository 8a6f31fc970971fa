// The engine runs on made-up sources as on real ones.
#include "Engine/MeterEngine.h"
#ifdef FORBIDDEN
#include <pipewire/pipewire.h>
#endif
