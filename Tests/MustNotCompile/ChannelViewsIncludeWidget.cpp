// What a display shows is filled for paper too.
#include "ChannelViews/ChannelLevelHistory.h"
#ifdef FORBIDDEN
#include <QWidget>
#endif
