#include "Shell/Updates/UpdateOffer.h"

#include <QString>
#include <QUrl>
#include <array>
#include <charconv>

#include "Displays/RawText.h"
#include "Shell/Updates/SecureAddress.h"

namespace TarvaneApp {

namespace {

using ReleaseNumber = std::array<int, 3>;

// "1.2.0": three numbers without signs, as many digits as any release has.
std::optional<ReleaseNumber> releaseNumber(std::string_view text) {
    constexpr std::ptrdiff_t mostDigits = 6;
    ReleaseNumber number{};
    const char* at = text.data();
    const char* const end = at + text.size();
    for (std::size_t i = 0; i < number.size(); ++i) {
        if (i > 0 && (at == end || *at++ != '.')) {
            return std::nullopt;
        }
        if (at == end || *at < '0' || *at > '9') {
            return std::nullopt;
        }
        const auto [next, error] = std::from_chars(at, end, number.at(i));
        if (error != std::errc() || next - at > mostDigits) {
            return std::nullopt;
        }
        at = next;
    }
    return at == end ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<UpdateOffer> UpdateOffer::parse(std::string_view text) {
    if (text.size() > mostBytes) {
        return std::nullopt;
    }
    auto offer = TarvaneKit::decode<UpdateOffer>(text);
    const bool isUsable = offer && releaseNumber(offer->version) &&
                          isSecureAddress(QUrl(utf8Text(offer->page), QUrl::StrictMode));
    return isUsable ? offer : std::nullopt;
}

bool UpdateOffer::isNewerThan(std::string_view running) const {
    const auto offered = releaseNumber(version);
    const auto ours = releaseNumber(running);
    return offered && ours && *offered > *ours;
}

}  // namespace TarvaneApp
