#include "Shell/Forms/FormWarning.h"

#include <QLabel>

#include "Displays/Theme.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

FormRow& addWarning(FormSection& section, std::function<QString()> text) {
    FormRow& row = section.addHelp(text);
    styleTextLabel(static_cast<QLabel&>(row.control()), Theme::Text::caption, Theme::peakHold);
    return row.shownWhile([text = std::move(text)] { return !text().isEmpty(); });
}

QLabel* makeWarning(QWidget* parent) {
    auto* label = makeTextLabel({}, Theme::Text::caption, Theme::peakHold, parent);
    label->setWordWrap(true);
    return label;
}

}  // namespace TarvaneApp
