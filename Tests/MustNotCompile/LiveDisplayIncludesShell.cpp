// A display does not know the window that it stands in.
#include "LiveDisplays/LiveSPLReadoutView.h"
#ifdef FORBIDDEN
#include "Shell/Windows/MainWindow.h"
#endif
