// Any bytes as the JSON of a stored record: decoded or turned down, and a record that was decoded
// can be stored and comes back the same. Built once per record, which the build names.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Core/Coding.h"
#include "Core/Contract.h"
#include FUZZED_HEADER

namespace {

using Record = FUZZED_RECORD;

void check(std::string_view text, TarvaneKit::DateForm dates) {
    const auto record = TarvaneKit::decode<Record>(text, dates);
    if (!record) {
        return;
    }
    const auto stored = TarvaneKit::encode(*record, dates);
    TARVANE_PRECONDITION(stored.has_value());
    TARVANE_PRECONDITION(TarvaneKit::decode<Record>(*stored, dates) == record);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    check(text, TarvaneKit::DateForm::secondsSinceReferenceDate);
    check(text, TarvaneKit::DateForm::iso8601);
    return 0;
}
