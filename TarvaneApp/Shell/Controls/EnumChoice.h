// The cases of an enum as a choice for the user, in the enum's order: the items of a menu, the
// labels of a picker, and the case of a picked index.
#pragma once

#include <QStringList>
#include <algorithm>
#include <cstddef>
#include <vector>

#include "Core/RawEnum.h"
#include "Displays/RawText.h"
#include "Shell/Controls/MenuButton.h"

namespace TarvaneApp {

template <class E>
struct EnumChoice {
    /// The raw values, which the user reads.
    static QStringList labels() {
        QStringList labels;
        for (const E value : TarvaneKit::allCases<E>()) {
            labels.append(rawText(value));
        }
        return labels;
    }

    static int index(E value) {
        constexpr auto cases = TarvaneKit::allCases<E>();
        return static_cast<int>(std::ranges::find(cases, value) - cases.begin());
    }
    static E at(int index) { return TarvaneKit::allCases<E>()[static_cast<std::size_t>(index)]; }

    /// `pick(value)` runs when the user picks the item; `label(value)` is its text.
    template <class Pick, class Label = QString (*)(E)>
    static MenuButton::Item item(E value, E current, Pick pick, Label label = &rawText<E>) {
        return {.text = label(value),
                .isCurrent = value == current,
                .action = [pick, value] { pick(value); },
                .dot = std::nullopt};
    }

    /// An item for each case.
    template <class Pick, class Label = QString (*)(E)>
    static std::vector<MenuButton::Item> items(E current, Pick pick, Label label = &rawText<E>) {
        std::vector<MenuButton::Item> items;
        for (const E value : TarvaneKit::allCases<E>()) {
            items.push_back(item(value, current, pick, label));
        }
        return items;
    }
};

}  // namespace TarvaneApp
