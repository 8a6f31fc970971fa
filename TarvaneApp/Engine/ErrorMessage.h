// What went wrong, as a finished sentence for the user, until it is dismissed. Every owner may
// tell; the newest stands. Main thread only.
#pragma once

#include <optional>
#include <string>

#include "Settings/Published.h"

namespace TarvaneApp {

class ErrorMessage {
  public:
    const Observable<std::optional<std::string>>& text() const { return text_; }

    void tell(const std::string& sentence);
    void dismiss();

  private:
    Published<std::optional<std::string>> text_;
};

}  // namespace TarvaneApp
