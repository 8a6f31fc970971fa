// What a drawn display offers to a screen reader: it has no label widgets, so its widget lists what
// is drawn, and each entry becomes an accessible object.
#pragma once

#include <QAccessible>
#include <QRect>
#include <QString>
#include <vector>

namespace TarvaneApp {

/// One drawn value: its name, its text, and its place in the widget.
struct SpokenPart {
    QString name;
    QString value;
    QRect place;
};

/// A widget that draws values. The first part represents the widget itself, the others are its
/// children; their number is fixed for the widget's life.
class SpokenDisplay {
  public:
    virtual ~SpokenDisplay() = default;
    virtual std::vector<SpokenPart> spokenParts() const = 0;
    /// What the widget as a whole is: a text, unless it is a graph.
    virtual QAccessible::Role spokenRole() const { return QAccessible::StaticText; }
};

/// Makes SpokenDisplay widgets known to the accessibility system. Call it before the first one is
/// shown; further calls do nothing.
void installDisplayAccessibility();

}  // namespace TarvaneApp
