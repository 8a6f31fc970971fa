// The engine runs without a window.
#include "Engine/MeterEngine.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
