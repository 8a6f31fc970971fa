// What tests reach behind the engine's face and no control may: the processors, and live data to
// write to.
#pragma once

#include "Engine/EngineOwners.h"
#include "Metering/ChannelProcessor.h"

namespace TarvaneTests {

struct EngineInsides {
    static TarvaneApp::MeterChannel& channel(TarvaneApp::MeterEngine& engine,
                                             const TarvaneKit::UUID& id) {
        return engine.owners_->run.channelOf(id);
    }
    static std::shared_ptr<TarvaneApp::ChannelProcessor>& processor(TarvaneApp::MeterEngine& engine,
                                                                    const TarvaneKit::UUID& id) {
        return channel(engine, id).processor;
    }
    /// To write hours into that nobody waits for.
    static TarvaneKit::SPLHistoryRecorder& levelHistory(TarvaneApp::MeterEngine& engine,
                                                        const TarvaneKit::UUID& id) {
        return channel(engine, id).recorder();
    }
    static std::optional<TarvaneKit::Date>& heldRingAlertDate(TarvaneApp::MeterEngine& engine,
                                                              const TarvaneKit::UUID& id) {
        return channel(engine, id).heldRingAlertDate;
    }
    static void tell(TarvaneApp::MeterEngine& engine, const std::string& error) {
        engine.owners_->errorMessage.tell(error);
    }
};

}  // namespace TarvaneTests
