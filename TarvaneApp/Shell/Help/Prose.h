// The one mark-up of the help's texts: words between two pairs of asterisks are **bold**. All else
// stands for itself, a pair that nothing closes too.
#pragma once

#include <QColor>
#include <QString>
#include <string_view>
#include <vector>

namespace TarvaneApp {

struct ProseRun {
    QString text;
    bool isBold = false;
    bool operator==(const ProseRun&) const = default;
};

std::vector<ProseRun> prose(std::string_view text);

/// Without its mark-up.
QString plainProse(std::string_view text);

/// For a label: bold words are heavier, and in `boldColor`.
QString proseHTML(std::string_view text, const QColor& boldColor);

}  // namespace TarvaneApp
