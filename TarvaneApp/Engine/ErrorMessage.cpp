#include "Engine/ErrorMessage.h"

#include <algorithm>

namespace TarvaneApp {

void ErrorMessage::tell(const std::string& sentence) {
    if (!text_()) {
        text_.set(sentence);
    } else if (text_() != sentence && std::ranges::count(waiting_, sentence) == 0) {
        waiting_.push_back(sentence);
    }
}

void ErrorMessage::dismiss() {
    if (waiting_.empty()) {
        text_.set(std::nullopt);
        return;
    }
    const std::string next = waiting_.front();
    waiting_.pop_front();
    text_.set(next);
}

}  // namespace TarvaneApp
