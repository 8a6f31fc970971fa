#include "Report.h"

#include <algorithm>

namespace TarvaneConformance {

double Row::margin() const {
    const Limits range = limits.value_or(Limits{});
    double least = std::numeric_limits<double>::infinity();
    for (const double figure : measured) {
        const double departure = figure - goal.value_or(0.0);
        least = std::min({least, departure - range.lower, range.upper - departure});
    }
    return least;
}

Verdict Row::verdict() const {
    if (!limits || measured.empty()) {
        return Verdict::none;
    }
    if (margin() >= 0.0) {
        return Verdict::within;
    }
    return isKnownException ? Verdict::knownException : Verdict::outside;
}

Count countOf(const std::vector<Chapter>& chapters) {
    Count count;
    for (const Chapter& chapter : chapters) {
        for (const Table& table : chapter.tables) {
            for (const Row& row : table.rows) {
                switch (row.verdict()) {
                    case Verdict::none:
                        ++(row.measured.empty() ? count.notMeasured : count.withoutLimit);
                        break;
                    case Verdict::within:
                        ++count.within;
                        break;
                    case Verdict::outside:
                        ++count.outside;
                        break;
                    case Verdict::knownException:
                        ++count.knownExceptions;
                        break;
                }
            }
        }
    }
    return count;
}

}  // namespace TarvaneConformance
