// A drawing draws on any painter: a window, a picture, a page.
#include "Displays/Readouts/SPLReadoutView.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
