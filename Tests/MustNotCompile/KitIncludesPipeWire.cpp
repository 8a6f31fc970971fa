// The analysis library sees audio through its own contract, whatever delivers it.
#include "AudioIO/AudioSystem.h"
#ifdef FORBIDDEN
#include <pipewire/pipewire.h>
#endif
