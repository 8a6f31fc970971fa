// The labels of a page that is read: they wrap, and their text can be selected.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <string_view>

#include "Shell/Controls/WrappedLabel.h"

namespace TarvaneApp {

/// Plain text with the role of a heading for a screen reader.
class HeadingLabel final : public WrappedLabel {
    Q_OBJECT
  public:
    /// `size` in logical pixels.
    HeadingLabel(const QString& text, double size, QWidget* parent = nullptr);
};

/// Text with bold words (Prose), at the size of the body.
WrappedLabel* makeProseLabel(std::string_view text, QWidget* parent);

/// Plain text, `size` in logical pixels.
WrappedLabel* makeReadingLabel(const QString& text, double size, const QColor& color,
                               QWidget* parent);

}  // namespace TarvaneApp
