// The engine runs on made-up sources as on real ones.
#include "MeterEngine.h"
#ifdef FORBIDDEN
#include <pipewire/pipewire.h>
#endif
