// A drawing draws on any painter: a window, a picture, a page.
#include "Readouts/SPLReadoutView.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
