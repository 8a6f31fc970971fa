// The windows see audio through the engine alone.
#include "MainWindow.h"
#ifdef FORBIDDEN
#include <pipewire/pipewire.h>
#endif
