// A table as a small picture: how far each figure is from its goal, or itself where there is none,
// between its limits.
#pragma once

#include <string>

#include "Report.h"

namespace TarvaneConformance {

/// An SVG element; nothing for a table without an axis. Its colours are classes of the page:
/// `limits`, `grid`, `series0` to `series5`.
std::string plotOf(const Table& table);

constexpr int seriesCount = 6;

/// For HTML and SVG.
std::string escaped(const std::string& text);

}  // namespace TarvaneConformance
