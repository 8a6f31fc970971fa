// A report is drawn beside the main thread, where no widget may be touched.
#include "Reports/LevelHistoryExporter.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
