// What a drawn display says to a screen reader: it has no labels of its own that could speak, so
// its widget lists what is drawn, and an accessible object stands for each entry.
#pragma once

#include <QRect>
#include <QString>
#include <vector>

namespace TarvaneApp {

/// One drawn value: what it is, what it reads, and where it stands in its widget.
struct SpokenPart {
    QString name;
    QString value;
    QRect place;
};

/// A widget that draws values. The first part speaks for the widget itself, the others are its
/// children; how many there are is fixed for the widget's life.
class SpokenDisplay {
  public:
    virtual ~SpokenDisplay() = default;
    virtual std::vector<SpokenPart> spokenParts() const = 0;
};

/// Lets the accessibility system know of all SpokenDisplay widgets. Once, before the first one
/// is shown; further calls do nothing.
void installDisplayAccessibility();

}  // namespace TarvaneApp
