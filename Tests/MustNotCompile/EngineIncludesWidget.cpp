// The engine runs without a window.
#include "MeterEngine.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
