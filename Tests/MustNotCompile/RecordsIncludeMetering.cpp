#include "Records/ChannelConfig.h"
#ifdef FORBIDDEN
#include "Metering/ChannelProcessor.h"
#endif
