// The report as text: tables of Markdown whose columns also line up where nothing renders them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Report.h"

namespace TarvaneConformance {

/// Without a build it is the same on every machine.
std::string textReport(const std::vector<Chapter>& chapters, const std::optional<Build>& build);

}  // namespace TarvaneConformance
