// What the displays on screen want computed. Nobody looks, nothing is computed: a spectrum or a
// spectrogram of a channel is made only while some display has registered for it. Main thread.
#pragma once

#include <QPointer>
#include <array>
#include <cstddef>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Core/UUID.h"

namespace TarvaneApp {

class MeterEngine;

enum class ChannelDemand { rta, spectrogram };

/// How many displays show what of which channel.
class ChannelDemandCounts {
  public:
    void add(ChannelDemand demand, const TarvaneKit::UUID& id) { ++counts_[id][indexOf(demand)]; }
    /// One display less; nothing when there was none.
    void remove(ChannelDemand demand, const TarvaneKit::UUID& id);
    bool contains(ChannelDemand demand, const TarvaneKit::UUID& id) const {
        const auto found = counts_.find(id);
        return found != counts_.end() && found->second[indexOf(demand)] > 0;
    }

  private:
    using PerDemand = std::array<int, 2>;
    static constexpr std::size_t indexOf(ChannelDemand demand) {
        return static_cast<std::size_t>(demand);
    }

    std::unordered_map<TarvaneKit::UUID, PerDemand> counts_;
};

/// A display's own part of the counts, lifted when the display goes away, however it goes.
class ChannelDemandRegistration {
  public:
    ChannelDemandRegistration() = default;
    ~ChannelDemandRegistration() { clear(); }
    ChannelDemandRegistration(const ChannelDemandRegistration&) = delete;
    ChannelDemandRegistration& operator=(const ChannelDemandRegistration&) = delete;

    /// What the display shows from now on, instead of all before: its own channel and those that
    /// it draws over it.
    void update(MeterEngine& engine, const std::vector<TarvaneKit::UUID>& ids,
                ChannelDemand demand);
    void clear();
    bool isEmpty() const { return registered_.empty(); }

  private:
    QPointer<MeterEngine> engine_;
    std::vector<std::pair<TarvaneKit::UUID, ChannelDemand>> registered_;
};

}  // namespace TarvaneApp
