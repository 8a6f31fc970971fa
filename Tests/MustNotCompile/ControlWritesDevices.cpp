#include "Engine/MeterChannel.h"
#include "Engine/MeterEngine.h"

void touch(TarvaneApp::MeterEngine& engine) {
    const auto& channel = engine.meterChannel(TarvaneKit::UUID::main());
    static_cast<void>(channel.live.currentSPLValueDB);
#ifdef FORBIDDEN
    engine.availableDevices.set({});
#endif
}
