#include "Metering/ChannelProcessor.h"
#ifdef FORBIDDEN
#include "Settings/Published.h"
#endif
