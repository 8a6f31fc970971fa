#include "Metering/ChannelProcessor.h"
#ifdef FORBIDDEN
#include <QObject>
#endif
