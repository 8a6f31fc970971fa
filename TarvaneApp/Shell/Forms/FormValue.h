// A value that a row of a form shows and changes, wherever it is kept: a setting, a field of a
// channel's record, a name that waits to be saved.
#pragma once

#include <functional>
#include <utility>

#include "Settings/Published.h"
#include "Settings/Setting.h"

namespace TarvaneApp {

template <class T>
struct FormValue {
    std::function<T()> get;
    std::function<void(T)> set;
};

/// `setting` outlives the form.
template <class T>
FormValue<T> settingValue(Setting<T>& setting) {
    return {.get = [&setting] { return setting(); },
            .set = [&setting](T value) { setting.set(std::move(value)); }};
}

/// The same of a value that isn't stored.
template <class T>
FormValue<T> publishedValue(Published<T>& value) {
    return {.get = [&value] { return value(); },
            .set = [&value](T changed) { value.set(std::move(changed)); }};
}

/// One field of a record. Setting it leaves the others as they are at that moment.
template <class Field, class Record>
FormValue<Field> fieldValue(FormValue<Record> record, Field Record::*field) {
    return {.get = [record, field] { return record.get().*field; },
            .set =
                [record, field](Field value) {
                    Record edited = record.get();
                    edited.*field = std::move(value);
                    record.set(std::move(edited));
                }};
}

}  // namespace TarvaneApp
