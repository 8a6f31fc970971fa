// What a feed of updates says: the newest version, and the page where it can be had. The whole
// feed is one JSON object, {"version": "1.2.0", "page": "https://…"}.
#pragma once

#include <string>
#include <string_view>
#include <tuple>

#include "Core/Coding.h"

namespace TarvaneApp {

struct UpdateOffer {
    std::string version;
    std::string page;

    bool operator==(const UpdateOffer&) const = default;

    /// No feed is larger.
    static constexpr std::size_t mostBytes = 16384;

    /// A stranger's text: absent unless the version is three numbers and the page an https address
    /// of a host, with no name or password in it.
    static std::optional<UpdateOffer> parse(std::string_view text);

    bool isNewerThan(std::string_view running) const;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::UpdateOffer> {
    static constexpr auto keys = std::tuple{
        required("version", &TarvaneApp::UpdateOffer::version),
        required("page", &TarvaneApp::UpdateOffer::page),
    };
};
