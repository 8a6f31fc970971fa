#include "Core/Coding.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Core/RGBAColor.h"
#include "DSP/OctaveFraction.h"
#include "DSP/Weighting.h"

namespace TarvaneKit {

struct Sample {
    double level = 1.5;
    int count = 7;
    bool on = true;
    std::string name = "new";
    std::optional<double> gain = 2.0;
    std::vector<int> list;
    Weighting weighting = Weighting::c;
    Date when;

    bool operator==(const Sample&) const = default;
};

template <>
struct Coding<Sample> {
    static constexpr auto keys = std::tuple{
        required("level", &Sample::level),
        defaulted("count", &Sample::count),
        defaulted("on", &Sample::on),
        defaulted("name", &Sample::name),
        optional("gain", &Sample::gain),
        defaulted("list", &Sample::list),
        defaulted("weighting", &Sample::weighting),
        defaulted("when", &Sample::when),
    };
};

namespace CodingTests {

TEST(Coding, writesTheKeysInTheTablesOrder) {
    Sample sample;
    sample.when = *dateFromSecondsSinceReferenceDate(0.0);
    EXPECT_EQ(encode(sample),
              R"({"level":1.5,"count":7,"on":true,"name":"new","gain":2.0,"list":[],)"
              R"("weighting":"C","when":0.0})");
}

TEST(Coding, leavesAbsentOptionalsOut) {
    Sample sample;
    sample.gain.reset();
    const auto text = encode(sample);
    ASSERT_TRUE(text);
    EXPECT_EQ(text->find("gain"), std::string::npos);
    EXPECT_EQ(decode<Sample>(*text), sample);
}

TEST(Coding, missingKeysKeepDefaultsButOptionalsReadAsAbsent) {
    const auto sample = decode<Sample>(R"({"level":3})");
    ASSERT_TRUE(sample);
    EXPECT_EQ(sample->level, 3.0);
    EXPECT_EQ(sample->count, 7);
    EXPECT_EQ(sample->name, "new");
    EXPECT_EQ(sample->weighting, Weighting::c);
    EXPECT_FALSE(sample->gain);
}

TEST(Coding, aMissingRequiredKeyFailsTheRecord) {
    EXPECT_FALSE(decode<Sample>("{}"));
    EXPECT_FALSE(decode<Sample>(R"({"level":null})"));
}

TEST(Coding, aWrongTypeFailsTheRecord) {
    EXPECT_FALSE(decode<Sample>(R"({"level":"3"})"));
    EXPECT_FALSE(decode<Sample>(R"({"level":3,"count":1.5})"));
    EXPECT_FALSE(decode<Sample>(R"({"level":3,"count":true})"));
    EXPECT_FALSE(decode<Sample>(R"({"level":3,"on":1})"));
    EXPECT_FALSE(decode<Sample>(R"({"level":3,"gain":"x"})"));
    EXPECT_FALSE(decode<Sample>(R"({"level":3,"list":[1,"2"]})"));
    EXPECT_FALSE(decode<Sample>(R"({"level":3,"weighting":"B"})"));
    EXPECT_FALSE(decode<Sample>(R"([3])"));
}

TEST(Coding, wholeNumbersComeFromAnyNumberWithoutFractionThatFits) {
    EXPECT_EQ(decode<int>("5.0"), 5);
    EXPECT_EQ(decode<int>("-2147483648"), std::numeric_limits<int>::min());
    EXPECT_FALSE(decode<int>("2147483648"));
    EXPECT_FALSE(decode<int>("1e300"));
    EXPECT_FALSE(decode<int>("0.5"));
}

TEST(Coding, floatsComeFromAnyNumberAndKeepEveryBit) {
    EXPECT_EQ(decode<double>("5"), 5.0);
    for (const double value : {0.1, -0.0, 1e-310, std::numeric_limits<double>::max(),
                               std::numeric_limits<double>::denorm_min(), 123456789.123456789}) {
        const auto back = decode<double>(encode(value).value());
        ASSERT_TRUE(back);
        EXPECT_EQ(*back, value);
        EXPECT_EQ(std::signbit(*back), std::signbit(value));
    }
}

TEST(Coding, aNumberThatIsNotFiniteHasNoForm) {
    EXPECT_FALSE(encode(std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(encode(-std::numeric_limits<double>::infinity()));
    EXPECT_FALSE(encode(RGBAColor{std::nan(""), 0, 0, 1}));
    EXPECT_FALSE(decode<double>("1e999"));
    EXPECT_FALSE(decode<double>("NaN"));
}

TEST(Coding, enumsAreTheirRawValues) {
    EXPECT_EQ(encode(Weighting::a), R"("A")");
    EXPECT_EQ(encode(OctaveFraction::twelfthOctave), "12");
    EXPECT_EQ(decode<OctaveFraction>("48"), OctaveFraction::fortyEighthOctave);
    EXPECT_FALSE(decode<OctaveFraction>("5"));
    EXPECT_FALSE(decode<OctaveFraction>(R"("3")"));
    EXPECT_FALSE(decode<TimeWeighting>(R"("fast")"));
}

TEST(Coding, datesAreNumbersOrISO8601Text) {
    const Date date = *dateFromISO8601("2026-03-01T19:30:05Z");
    // 2001-01-01 to 2026-03-01 are 9190 days.
    EXPECT_EQ(secondsSinceReferenceDate(date), 9190.0 * 86400 + 19 * 3600 + 30 * 60 + 5);
    EXPECT_EQ(decode<Date>(encode(date).value()), date);
    EXPECT_EQ(encode(date, DateForm::iso8601), R"("2026-03-01T19:30:05Z")");
    EXPECT_EQ(decode<Date>(R"("2026-03-01T19:30:05Z")", DateForm::iso8601), date);
    EXPECT_FALSE(decode<Date>(R"("2026-03-01T19:30:05Z")"));
    EXPECT_FALSE(decode<Date>("5", DateForm::iso8601));
    EXPECT_FALSE(decode<Date>("1e300"));
    EXPECT_FALSE(dateFromISO8601("2026-02-30T00:00:00Z"));
    EXPECT_FALSE(dateFromISO8601("2026-03-01 19:30:05Z"));
    EXPECT_FALSE(dateFromISO8601("9999-03-01T19:30:05Z"));
    EXPECT_EQ(dateFromISO8601("2026-03-01T20:30:05+01:00"), date);
    EXPECT_EQ(dateFromISO8601("2026-03-01T09:00:05-10:30"), date);
    EXPECT_EQ(dateFromISO8601("2026-03-01T19:30:05-00:00"), date);
    for (const char* other :
         {"2026-03-01T19:30:05", "2026-03-01T19:30:05z", "2026-03-01T19:30:05.5Z",
          "2026-03-01T20:30:05+0100", "2026-03-01T20:30:05+01", "2026-03-01T20:30:05+24:00",
          "2026-03-01T20:30:05+01:60", "2026-03-01T20:30:05 01:00", "2026-03-01T19:30Z",
          "2026-03-01", "20260301T193005Z", "2026-03-01T19:30:60Z", "2026-03-01T24:00:00Z",
          " 2026-03-01T19:30:05Z", "2026-03-01T19:30:05Z ", ""}) {
        EXPECT_FALSE(dateFromISO8601(other)) << other;
    }
}

// At both ends of the clock an offset must not lead to a date that can't be written.
TEST(Coding, everyDateThatIsReadCanBeWritten) {
    EXPECT_TRUE(dateFromISO8601("2261-12-31T23:59:59Z"));
    EXPECT_TRUE(dateFromISO8601("2262-01-01T00:59:59+01:00"));
    EXPECT_FALSE(dateFromISO8601("2261-12-31T23:59:59-00:01"));
    EXPECT_TRUE(dateFromISO8601("1678-01-01T00:00:00Z"));
    EXPECT_FALSE(dateFromISO8601("1678-01-01T00:00:00+00:01"));
}

TEST(JSONValue, aDocumentIsIndentedWithItsNamesInOrder) {
    const auto json = JSONValue::parse(R"({"b":[1,{"z":0.5,"a":true}],"a":{},"B":"ü"})");
    ASSERT_TRUE(json);
    EXPECT_EQ(json->write(JSONValue::Layout::document), R"({
  "B": "ü",
  "a": {},
  "b": [
    1,
    {
      "a": true,
      "z": 0.5
    }
  ]
})");
}

TEST(JSONValue, turnsDownWhatIsNotJSON) {
    for (const char* text : {"", "{", "{\"a\":}", "[1,]", "tru", "{\"a\":1}x", "\"\xff\""}) {
        EXPECT_FALSE(JSONValue::parse(text)) << text;
    }
}

TEST(JSONValue, turnsDownBottomlessNesting) {
    EXPECT_TRUE(JSONValue::parse(std::string(128, '[') + std::string(128, ']')));
    EXPECT_FALSE(JSONValue::parse(std::string(129, '[') + std::string(129, ']')));
    EXPECT_FALSE(JSONValue::parse(std::string(1000000, '[')));
}

TEST(JSONValue, theLastOfARepeatedNameCounts) {
    EXPECT_EQ(decode<Sample>(R"({"level":1,"level":2})")->level, 2.0);
}

TEST(RawEnum, casesComeInTheirToldOrder) {
    constexpr auto cases = allCases<TimeWeighting>();
    ASSERT_EQ(cases.size(), 4U);
    EXPECT_EQ(cases[0], TimeWeighting::fast);
    EXPECT_EQ(cases[3], TimeWeighting::none);
    EXPECT_EQ(rawValue(Weighting::z), "Z");
    EXPECT_FALSE(fromRawValue<Weighting>("B"));
}

TEST(Coding, aMapOfIdentifiersIsAnObjectWithTheirTextsAsNames) {
    using Map = std::map<UUID, int>;
    const Map map{{*UUID::create("6A1D0000-0000-4000-8000-00000000000b"), 2}, {UUID::main(), 1}};
    const auto text = encode(map);
    EXPECT_EQ(text, R"({"6A1D0000-0000-4000-8000-000000000001":1,)"
                    R"("6A1D0000-0000-4000-8000-00000000000B":2})");
    EXPECT_EQ(decode<Map>(*text), map);
    EXPECT_EQ(decode<Map>("{}"), Map{});
    EXPECT_FALSE(decode<Map>(R"({"main":1})"));
    EXPECT_FALSE(decode<Map>(R"({"6A1D0000-0000-4000-8000-000000000001":"1"})"));
    EXPECT_FALSE(decode<Map>("[]"));
}

}  // namespace CodingTests
}  // namespace TarvaneKit
