#include "Shell/Preferences/DeviceTitles.h"

#include <gtest/gtest.h>

namespace TarvaneApp {
namespace DeviceTitlesTests {

using TarvaneKit::AudioInputDevice;
using Titles = std::vector<std::string>;

// The titles of devices that are called the same and have these uids.
Titles titlesOf(const std::vector<std::string>& uids) {
    std::vector<AudioInputDevice> devices;
    for (const std::string& uid : uids) {
        devices.push_back({.uid = uid, .name = "Mic"});
    }
    return deviceTitles(devices);
}

TEST(DeviceTitles, areTheNamesWhereTheseDiffer) {
    EXPECT_EQ(deviceTitles({{.uid = "a.1", .name = "Desk"}, {.uid = "a.2", .name = "Mic"}}),
              (Titles{"Desk", "Mic"}));
    EXPECT_EQ(deviceTitles({}), Titles{});
}

TEST(DeviceTitles, onlyNamesThatOccurTwiceGetMore) {
    EXPECT_EQ(deviceTitles({{.uid = "in.a", .name = "Mic"},
                            {.uid = "in.c", .name = "Desk"},
                            {.uid = "in.b", .name = "Mic"}}),
              (Titles{"Mic (a)", "Desk", "Mic (b)"}));
}

TEST(DeviceTitles, aSerialNumberTellsTwoOfAKindApart) {
    EXPECT_EQ(titlesOf({"alsa_input.usb-Maker_Mic_SN00A17-00.mono-fallback",
                        "alsa_input.usb-Maker_Mic_SN00B02-00.mono-fallback"}),
              (Titles{"Mic (SN00A17)", "Mic (SN00B02)"}));
}

TEST(DeviceTitles, thePortDoesWhereThereIsNoSerialNumber) {
    EXPECT_EQ(titlesOf({"alsa_input.pci-0000_00_14.0-usb-0_1_1.0.mono",
                        "alsa_input.pci-0000_00_14.0-usb-0_2_1.0.mono"}),
              (Titles{"Mic (1)", "Mic (2)"}));
}

TEST(DeviceTitles, anEndThatOnlyOneHasIsItsOwn) {
    EXPECT_EQ(titlesOf({"alsa_input.Mic.mono", "alsa_input.Mic.2.mono"}),
              (Titles{"Mic", "Mic (2)"}));
    EXPECT_EQ(titlesOf({"twin", "twin#57"}), (Titles{"Mic", "Mic (57)"}));
    EXPECT_EQ(titlesOf({"#12", "#57"}), (Titles{"Mic (12)", "Mic (57)"}));
}

TEST(DeviceTitles, areTheSameInAnyOrder) {
    EXPECT_EQ(titlesOf({"in.b", "in.a"}), (Titles{"Mic (b)", "Mic (a)"}));
    EXPECT_EQ(titlesOf({"in.a", "in.c", "out.a"}),
              (Titles{"Mic (in.a)", "Mic (in.c)", "Mic (out.a)"}));
}

TEST(DeviceTitles, wordsThatAreHalfTheSameStayWhole) {
    EXPECT_EQ(titlesOf({"in.100", "in.150"}), (Titles{"Mic (100)", "Mic (150)"}));
    EXPECT_EQ(titlesOf({"aa", "aaa"}), (Titles{"Mic (aa)", "Mic (aaa)"}));
}

TEST(DeviceTitles, separatorsAloneTellApartByTheWholeUID) {
    EXPECT_EQ(titlesOf({"in.a", "in_a"}), (Titles{"Mic (in.a)", "Mic (in_a)"}));
    EXPECT_EQ(titlesOf({"a", "a."}), (Titles{"Mic (a)", "Mic (a.)"}));
}

}  // namespace DeviceTitlesTests
}  // namespace TarvaneApp
