// The cases of an enum as what a form's picker offers, in the enum's order.
#pragma once

#include <vector>

#include "Core/RawEnum.h"
#include "Displays/RawText.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

/// `label(value)` is the text of a case; its raw value unless told otherwise.
template <class E, class Label = QString (*)(E)>
std::vector<FormChoice<E>> enumChoices(Label label = &rawText<E>) {
    std::vector<FormChoice<E>> choices;
    for (const E value : TarvaneKit::allCases<E>()) {
        choices.push_back({label(value), value});
    }
    return choices;
}

}  // namespace TarvaneApp
