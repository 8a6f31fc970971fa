// What holds of every stored record, whatever its table says. A test program applies it to its
// records by one line:
//
//     INSTANTIATE_TYPED_TEST_SUITE_P(Kit, CodingLaws, testing::Types<…>, RecordName);
#pragma once

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <set>

#include "Support/RecordGenerators.h"

namespace TarvaneKit::Testing {

struct RecordName {
    template <class Record>
    static std::string GetName(int) {
        const std::string name = testing::internal::GetTypeName<Record>();
        return name.substr(name.rfind(':') + 1);
    }
};

/// JSON of every form but the one that a member of type `T` is stored in.
template <class T>
std::vector<JSONValue> otherForms() {
    if constexpr (CodingDetail::isOptional<T>) {
        return otherForms<typename T::value_type>();
    } else {
        constexpr bool isNumber =
            (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) || std::is_same_v<T, Date>;
        std::vector<JSONValue> forms;
        if (!std::is_same_v<T, bool>) {
            forms.push_back({{true}});
        }
        if (!isNumber) {
            forms.push_back({{std::int64_t{-12345}}});
        }
        if (!isNumber || std::is_integral_v<T>) {
            forms.push_back({{1.5}});
            forms.push_back({{1e300}});
        }
        if (!std::is_same_v<T, std::string>) {
            forms.push_back({{std::string("no such case")}});
            forms.push_back({{std::string()}});
        }
        if (!CodingDetail::isVector<T>) {
            forms.push_back({{JSONValue::Array{}}});
        }
        if (!CodedRecord<T> && !CodingDetail::isMap<T>) {
            forms.push_back({{JSONValue::Object{}}});
        }
        return forms;
    }
}

template <class Record>
class CodingLaws : public testing::Test {
  protected:
    using Key = KeyKind;
    static constexpr auto seconds = DateForm::secondsSinceReferenceDate;

    /// A record's defaults may depend on its other members.
    static constexpr bool completes = requires(Record & record) {
        Coding<Record>::complete(record, JSONValue{});
    };

    static void holds(const std::function<void(const Record&)>& property) {
        EXPECT_TRUE(holdsAlways([&] { property(drawnValue<Record>()); }));
    }

    template <class Visit>
    static void forEachKey(const Visit& visit) {
        std::apply([&](const auto&... key) { (visit(key), ...); }, Coding<Record>::keys);
    }

    static JSONValue::Object encoded(const Record& record) {
        return std::get<JSONValue::Object>(encodeJSON(record, seconds).content);
    }
    static std::optional<Record> decoded(JSONValue::Object object) {
        return decodeJSON<Record>({{std::move(object)}}, seconds);
    }
};
TYPED_TEST_SUITE_P(CodingLaws);

TYPED_TEST_P(CodingLaws, comesBackFromItsTextInBothFormsOfDates) {
    this->holds([](const TypeParam& record) {
        for (const auto dates : {DateForm::secondsSinceReferenceDate, DateForm::iso8601}) {
            const auto text = encode(record, dates);
            RC_ASSERT(text.has_value());
            RC_ASSERT(decode<TypeParam>(*text, dates) == record);
        }
    });
}

TYPED_TEST_P(CodingLaws, keepsEveryBitOfNumbersAtTheEdges) {
    this->holds([](TypeParam record) {
        const double edge = *rc::gen::elementOf(edgeNumbers());
        forEachLeaf<double>(record, [&](double& number) { number = edge; });
        auto back = decode<TypeParam>(encode(record).value());
        RC_ASSERT(back == record);
        forEachLeaf<double>(
            *back, [&](double& number) { RC_ASSERT(std::signbit(number) == std::signbit(edge)); });
    });
}

TYPED_TEST_P(CodingLaws, writesTheTablesKeysInOrderAndAbsentOnesNotAtAll) {
    this->holds([this](const TypeParam& record) {
        std::vector<std::string> expected;
        this->forEachKey([&](const auto& key) {
            const auto& member = record.*key.member;
            if constexpr (CodingDetail::isOptional<std::remove_cvref_t<decltype(member)>>) {
                if (!member) {
                    return;
                }
            }
            expected.emplace_back(key.name);
        });
        std::vector<std::string> names;
        for (const auto& member : this->encoded(record)) {
            names.push_back(member.name);
            RC_ASSERT(!member.value.isNull());
        }
        RC_ASSERT(names == expected);
        RC_ASSERT(std::set(names.begin(), names.end()).size() == names.size());
    });
}

TYPED_TEST_P(CodingLaws, aMissingKeyGoesByItsKindAndSoDoesNull) {
    this->holds([this](const TypeParam& record) {
        this->forEachKey(
            [&]<KeyKind kind, class Member>(const CodingKey<kind, TypeParam, Member>& key) {
                auto without = this->encoded(record);
                std::erase_if(without, [&](const auto& member) { return member.name == key.name; });
                auto withNull = without;
                withNull.push_back({std::string(key.name), {}});
                for (const auto& object : {without, withNull}) {
                    const auto back = this->decoded(object);
                    RC_ASSERT(back.has_value() == (kind != KeyKind::required));
                    if (kind == KeyKind::required || this->completes) {
                        continue;
                    }
                    if (TypeParam{}.*key.member != TypeParam{}.*key.member) {
                        continue;  // a default that is made anew for each record
                    }
                    TypeParam expected = record;
                    if constexpr (kind == KeyKind::optional) {
                        expected.*key.member = std::nullopt;
                    } else {
                        expected.*key.member = TypeParam{}.*key.member;
                    }
                    RC_ASSERT(back == expected);
                }
            });
    });
}

TYPED_TEST_P(CodingLaws, aMemberOfAnotherFormFailsTheRecord) {
    this->holds([this](const TypeParam& record) {
        this->forEachKey([&]<KeyKind kind, class Member>(
                             const CodingKey<kind, TypeParam, Member>& key) {
            for (const auto& form : otherForms<Member>()) {
                auto object = this->encoded(record);
                std::erase_if(object, [&](const auto& member) { return member.name == key.name; });
                object.push_back({std::string(key.name), form});
                RC_ASSERT(!this->decoded(object));
            }
        });
    });
}

TYPED_TEST_P(CodingLaws, keysOfOthersArePassedOver) {
    this->holds([this](const TypeParam& record) {
        auto object = this->encoded(record);
        object.insert(object.begin(), {"", {{true}}});
        object.push_back({"of a later version", {{JSONValue::Array{{{1.5}}}}}});
        RC_ASSERT(this->decoded(object) == record);
    });
}

TYPED_TEST_P(CodingLaws, anythingButAnObjectIsNoRecord) {
    for (const char* text : {"null", "true", "1", "1.5", "\"text\"", "[]", "[{}]", "", "{"}) {
        EXPECT_FALSE(decode<TypeParam>(text)) << text;
    }
}

TYPED_TEST_P(CodingLaws, aNumberThatIsNotFiniteAnywhereFailsToEncode) {
    using Limits = std::numeric_limits<double>;
    this->holds([](const TypeParam& record) {
        for (const double number : {-Limits::infinity(), Limits::infinity(), Limits::quiet_NaN()}) {
            withEachLeafReplaced<double>(
                record, number, [](const TypeParam& changed) { RC_ASSERT(!encode(changed)); });
        }
    });
}

TYPED_TEST_P(CodingLaws, aTextThatIsNotUTF8AnywhereFailsToEncode) {
    this->holds([](const TypeParam& record) {
        withEachLeafReplaced<std::string>(
            record,
            "Gr\xF6\xDF"
            "e",
            [](const TypeParam& changed) { RC_ASSERT(!encode(changed)); });
    });
}

REGISTER_TYPED_TEST_SUITE_P(
    CodingLaws, comesBackFromItsTextInBothFormsOfDates, keepsEveryBitOfNumbersAtTheEdges,
    writesTheTablesKeysInOrderAndAbsentOnesNotAtAll, aMissingKeyGoesByItsKindAndSoDoesNull,
    aMemberOfAnotherFormFailsTheRecord, keysOfOthersArePassedOver, anythingButAnObjectIsNoRecord,
    aNumberThatIsNotFiniteAnywhereFailsToEncode, aTextThatIsNotUTF8AnywhereFailsToEncode);

}  // namespace TarvaneKit::Testing
