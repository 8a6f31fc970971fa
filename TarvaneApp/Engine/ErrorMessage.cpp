#include "Engine/ErrorMessage.h"

namespace TarvaneApp {

void ErrorMessage::tell(const std::string& sentence) {
    text_.set(sentence);
}

void ErrorMessage::dismiss() {
    text_.set(std::nullopt);
}

}  // namespace TarvaneApp
