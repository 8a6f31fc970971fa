#include "Shell/Forms/FormRow.h"

#include <QFormLayout>
#include <QWidget>

namespace TarvaneApp {

FormRow::FormRow(QFormLayout& rows, QWidget& control, const FormRow* before,
                 std::function<void()> show)
    : rows_(rows),
      control_(control),
      label_(rows.labelForField(&control)),
      before_(before),
      show_(std::move(show)) {
    int row = 0;
    auto role = QFormLayout::FieldRole;
    rows_.getWidgetPosition(&control_, &row, &role);
    spans_ = role == QFormLayout::SpanningRole;
}

FormRow& FormRow::shownWhile(std::function<bool()> condition) {
    isShown_ = std::move(condition);
    return *this;
}

FormRow& FormRow::enabledWhile(std::function<bool()> condition) {
    isEnabled_ = std::move(condition);
    return *this;
}

int FormRow::count() const {
    return (before_ != nullptr ? before_->count() : 0) + int{isIn_};
}

// A row that isn't there is not in the layout at all: with rows that are only hidden, Qt 6.4 writes
// beyond its arrays as soon as another row's height depends on its width.
void FormRow::takeOut() {
    const QFormLayout::TakeRowResult items = rows_.takeRow(&control_);
    delete items.labelItem;
    delete items.fieldItem;
    isIn_ = false;
    control_.hide();
    if (label_ != nullptr) {
        label_->hide();
    }
}

void FormRow::putIn() {
    const int place = count();
    if (spans_) {
        rows_.insertRow(place, &control_);
    } else {
        rows_.insertRow(place, label_, &control_);
    }
    isIn_ = true;
    control_.show();
    if (label_ != nullptr) {
        label_->show();
    }
}

void FormRow::refresh() {
    const bool isShown = !isShown_ || isShown_();
    if (isShown != isIn_) {
        if (isShown) {
            putIn();
        } else {
            takeOut();
        }
    }
    if (!isShown) {
        return;
    }
    if (isEnabled_) {
        const bool isEnabled = isEnabled_();
        control_.setEnabled(isEnabled);
        if (label_ != nullptr) {
            label_->setEnabled(isEnabled);
        }
    }
    if (show_) {
        show_();
    }
}

}  // namespace TarvaneApp
