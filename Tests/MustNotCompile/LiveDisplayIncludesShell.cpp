// A display does not know the window that it stands in.
#include "Readouts/LiveSPLReadoutView.h"
#ifdef FORBIDDEN
#include "MainWindow.h"
#endif
