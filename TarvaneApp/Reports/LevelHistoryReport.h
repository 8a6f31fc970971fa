// What one channel did over the session, as titled sections of finished text. Page and plain text
// are made from it, so that both say the same words. Main thread only.
#pragma once

#include <QString>
#include <optional>
#include <vector>

#include "Core/Date.h"
#include "Core/UUID.h"
#include "Records/ChannelInfo.h"

namespace TarvaneApp {

class MeterEngine;

struct LevelHistoryReport {
    struct Row {
        QString label;
        QString value;

        bool operator==(const Row&) const = default;
    };
    struct Section {
        QString title;
        std::vector<Row> rows;

        bool operator==(const Section&) const = default;
    };

    TarvaneKit::UUID channelID;
    QString channelName;
    QString title;
    QString subtitle;
    std::vector<Section> sections;
    QString footnote;
    TarvaneKit::Date sessionStart;

    /// Of the session up to now. Absent for a channel that doesn't exist or has recorded nothing.
    static std::optional<LevelHistoryReport> make(const MeterEngine& engine,
                                                  const TarvaneKit::UUID& channelID,
                                                  TarvaneKit::Date exportDate);

    /// The channels that have a report, in the engine's order.
    static std::vector<ChannelInfo> exportableChannels(const MeterEngine& engine);

    /// Lines with the values in a column, the last one ended like the others.
    QString plainText() const;
    /// One under the other, with a rule between them.
    static QString plainText(const std::vector<LevelHistoryReport>& reports);

    /// Without extension: named after the earliest session, and after the channel where there is
    /// one. `now` stands for the session where there is no report.
    static QString suggestedFileName(const std::vector<LevelHistoryReport>& reports,
                                     TarvaneKit::Date now);

    bool operator==(const LevelHistoryReport&) const = default;
};

}  // namespace TarvaneApp
