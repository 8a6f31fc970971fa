// The user's settings as the program sees them: named values in three forms.
//
// Main thread only.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Settings/Observable.h"

namespace TarvaneApp {

class KeyValueStore {
  public:
    virtual ~KeyValueStore() = default;

    /// Each reader is empty for a key that is absent or holds another form.
    virtual std::optional<std::string> text(std::string_view key) const = 0;
    virtual std::optional<double> number(std::string_view key) const = 0;
    virtual std::optional<std::string> data(std::string_view key) const = 0;

    virtual void setText(std::string_view key, const std::string& value) = 0;
    virtual void setNumber(std::string_view key, double value) = 0;
    virtual void setData(std::string_view key, const std::string& bytes) = 0;
    virtual void remove(std::string_view key) = 0;

    /// Sees that all that was set comes to where it survives the process, without waiting for it.
    virtual void synchronize() = 0;

    /// While what was set can't be stored: a finished sentence for the user that says why.
    virtual const Observable<std::optional<std::string>>& saveFailure() const = 0;
};

}  // namespace TarvaneApp
