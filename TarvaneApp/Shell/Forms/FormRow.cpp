#include "Shell/Forms/FormRow.h"

#include <QFormLayout>
#include <QWidget>

namespace TarvaneApp {

FormRow::FormRow(QFormLayout& rows, QWidget& control, std::function<void()> show)
    : rows_(rows), control_(control), show_(std::move(show)) {}

FormRow& FormRow::shownWhile(std::function<bool()> condition) {
    isShown_ = std::move(condition);
    return *this;
}

FormRow& FormRow::enabledWhile(std::function<bool()> condition) {
    isEnabled_ = std::move(condition);
    return *this;
}

void FormRow::refresh() {
    const bool isShown = !isShown_ || isShown_();
    if (rows_.isRowVisible(&control_) != isShown) {
        rows_.setRowVisible(&control_, isShown);
    }
    if (!isShown) {
        return;
    }
    if (isEnabled_) {
        const bool isEnabled = isEnabled_();
        control_.setEnabled(isEnabled);
        if (QWidget* label = rows_.labelForField(&control_)) {
            label->setEnabled(isEnabled);
        }
    }
    if (show_) {
        show_();
    }
}

}  // namespace TarvaneApp
