// A sentence in a form that stands out: what went wrong, or what the user should know before they
// rely on a value.
#pragma once

#include <QString>
#include <functional>

class QLabel;
class QWidget;

namespace TarvaneApp {

class FormRow;
class FormSection;

/// Under the row before it, while `text` has one.
FormRow& addWarning(FormSection& section, std::function<QString()> text);

/// The same look for a label of its own.
QLabel* makeWarning(QWidget* parent);

}  // namespace TarvaneApp
