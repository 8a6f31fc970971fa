#include "Shell/Controls/WrappedLabel.h"

#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int smallestWidth = 120;

}  // namespace

WrappedLabel::WrappedLabel(double size, const QColor& color, QWidget* parent) : QLabel(parent) {
    styleTextLabel(*this, size, color);
    setWordWrap(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
}

QSize WrappedLabel::sizeHint() const {
    return minimumSizeHint();
}

QSize WrappedLabel::minimumSizeHint() const {
    return {smallestWidth, fontMetrics().height()};
}

}  // namespace TarvaneApp
