#include "Engine/ChannelDemand.h"

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

void ChannelDemandCounts::remove(ChannelDemand demand, const UUID& id) {
    const auto found = counts_.find(id);
    if (found == counts_.end() || found->second[indexOf(demand)] == 0) {
        return;
    }
    --found->second[indexOf(demand)];
    if (found->second == PerDemand{}) {
        counts_.erase(found);
    }
}

void ChannelDemandRegistration::update(MeterEngine& engine, const std::vector<UUID>& ids,
                                       ChannelDemand demand) {
    clear();
    engine_ = &engine;
    for (const UUID& id : ids) {
        engine.addDemand(demand, id);
        registered_.emplace_back(id, demand);
    }
}

void ChannelDemandRegistration::clear() {
    if (engine_) {
        for (const auto& [id, demand] : registered_) {
            engine_->removeDemand(demand, id);
        }
    }
    registered_.clear();
}

}  // namespace TarvaneApp
