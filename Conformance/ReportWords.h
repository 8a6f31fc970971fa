// The words and cells that the forms of a report share, so that text and page read the same.
#pragma once

#include <string>
#include <vector>

#include "Report.h"

namespace TarvaneConformance {

/// Title and introduction.
extern const char* const reportTitle;
extern const char* const reportText;

std::string summaryOf(const Count& count);
std::string buildLine(const Build& build);

/// "-0.04"; never "-0.00".
std::string figure(double value, int decimals);
std::string limitsText(const Row& row);
std::string verdictText(Verdict verdict);

/// Headings and cells of a table: label, goal and limits and margin and verdict where any row has
/// one, the columns, remarks where there are some.
std::vector<std::string> headingsOf(const Table& table);
std::vector<std::string> cellsOf(const Table& table, const Row& row);
/// Of the verdict among the cells; -1 where there is none.
int verdictColumn(const Table& table);

/// Sentences on all exceptions, in the order of the chapters.
std::vector<std::string> exceptionsOf(const std::vector<Chapter>& chapters);

}  // namespace TarvaneConformance
