// A conformance report as data: chapters of tables, each row with what a standard asks for and what
// the library was found to do. Verdicts follow from the figures and are never written down.
#pragma once

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace TarvaneConformance {

/// Of a figure's departure from its goal; of the figure itself where there is no goal. Infinite:
/// there is none on that side.
struct Limits {
    double lower = -std::numeric_limits<double>::infinity();
    double upper = std::numeric_limits<double>::infinity();

    static Limits within(double departure) { return {-departure, departure}; }
};

enum class Verdict {
    none,    ///< no limit, or nothing measured
    within,  ///< every figure of the row is inside its limits
    outside,
    knownException,  ///< outside, and the report says why
};

struct Row {
    std::string label{};
    double place = 0.0;  ///< along the plot's axis
    std::optional<double> goal{};
    std::optional<Limits> limits{};
    std::vector<double> measured{};  ///< one per column of the table; none at all: not measured
    std::string remark{};
    bool isKnownException = false;

    /// How far the figure nearest to a limit is inside it, negative outside. Only with limits and
    /// something measured.
    double margin() const;
    Verdict verdict() const;
};

struct Table {
    enum class Axis {
        none,  ///< no plot
        linear,
        logarithmic,  ///< in Hz or ms
        rows,         ///< one step per row
    };

    std::string title{};
    std::string clause{};  ///< of the chapter's standard
    std::string text{};    ///< what is fed, and how it is read
    std::string labelHeading{};
    std::string unit{};
    std::vector<std::string> columns{};
    std::vector<Row> rows{};
    int decimals = 2;
    Axis axis = Axis::rows;
};

struct Chapter {
    std::string title{};
    std::string text{};
    std::vector<std::string> exceptions{};  ///< whole sentences
    std::vector<Table> tables{};
};

/// What the report is of; not in the copy that is the same on every machine.
struct Build {
    std::string version;
    std::string instructionSet;
};

struct Count {
    int within = 0;
    int outside = 0;
    int knownExceptions = 0;
    int withoutLimit = 0;
    int notMeasured = 0;

    int judged() const { return within + outside + knownExceptions; }
};

/// Of rows.
Count countOf(const std::vector<Chapter>& chapters);

}  // namespace TarvaneConformance
