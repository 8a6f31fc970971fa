// What went wrong, as a finished sentence for the user, until it is dismissed. Every owner may
// tell; each stands until it is dismissed, and those that come meanwhile wait for their turn. What
// is told already isn't told twice. Main thread only.
#pragma once

#include <deque>
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
    std::deque<std::string> waiting_;
};

}  // namespace TarvaneApp
