// The report as one page that needs nothing beside it.
#pragma once

#include <string>
#include <vector>

#include "Report.h"

namespace TarvaneConformance {

std::string htmlReport(const std::vector<Chapter>& chapters, const Build& build);

}  // namespace TarvaneConformance
