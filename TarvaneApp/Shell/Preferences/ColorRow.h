// A row that is a colour and what it is for: a title, a small detail beside it, and at the end the
// colour well, so that the wells of rows under each other stand in a column.
#pragma once

#include <functional>

#include "Core/RGBAColor.h"
#include "Shell/Forms/FormRow.h"
#include "Shell/Forms/FormValue.h"

class QString;

namespace TarvaneApp {

class FormSection;

/// `detail` is looked at whenever the form is refreshed.
FormRow& addColorRow(FormSection& section, const QString& title, std::function<QString()> detail,
                     FormValue<TarvaneKit::RGBAColor> color);

}  // namespace TarvaneApp
