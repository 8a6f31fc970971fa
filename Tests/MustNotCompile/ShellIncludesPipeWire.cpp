// The windows see audio through the engine alone.
#include "Shell/Windows/MainWindow.h"
#ifdef FORBIDDEN
#include <pipewire/pipewire.h>
#endif
