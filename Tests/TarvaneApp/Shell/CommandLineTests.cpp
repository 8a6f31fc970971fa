#include "Shell/CommandLine.h"

#include <gtest/gtest.h>

#include "Build/Version.h"

namespace TarvaneApp {
namespace CommandLineTests {

using CommandLine::answer;

TEST(CommandLineTests, withoutOptionsTheProgramStarts) {
    EXPECT_FALSE(answer({}).has_value());
}

TEST(CommandLineTests, helpAndVersionAreAnsweredOnStandardOutput) {
    for (const auto* option : {"--help", "-h"}) {
        const auto help = answer({option});
        ASSERT_TRUE(help.has_value());
        EXPECT_TRUE(help->text.starts_with("Usage: tarvane [option]\n"));
        EXPECT_FALSE(help->isRefusal);
        EXPECT_EQ(help->exitCode(), 0);
    }
    for (const auto* option : {"--version", "-v"}) {
        EXPECT_EQ(answer({option}).value_or(CommandLine::Answer{}).text,
                  std::string("Tarvane ") + Build::version + "\n");
    }
}

TEST(CommandLineTests, whatIsUnknownIsRefusedInOneLine) {
    const std::vector<std::pair<std::vector<std::string_view>, std::string>> refused{
        {{"--frobnicate"}, "tarvane: unknown option '--frobnicate'; see tarvane --help\n"},
        {{"-x"}, "tarvane: unknown option '-x'; see tarvane --help\n"},
        {{"session.json"}, "tarvane: unknown argument 'session.json'; see tarvane --help\n"},
        {{""}, "tarvane: unknown argument ''; see tarvane --help\n"},
        {{"-style", "fusion", "--"}, "tarvane: unknown option '--'; see tarvane --help\n"},
        {{"-platform"}, "tarvane: the option '-platform' lacks its value; see tarvane --help\n"},
    };
    for (const auto& [arguments, text] : refused) {
        const auto refusal = answer(arguments);
        ASSERT_TRUE(refusal.has_value()) << text;
        EXPECT_EQ(refusal->text, text);
        EXPECT_TRUE(refusal->isRefusal);
        EXPECT_EQ(refusal->exitCode(), 2);
    }
}

// A value is no option, whatever it looks like.
TEST(CommandLineTests, theToolkitsOptionsAreLetThrough) {
    EXPECT_FALSE(answer({"-platform", "offscreen"}).has_value());
    EXPECT_FALSE(answer({"--platform", "xcb", "-reverse", "-style", "fusion"}).has_value());
    EXPECT_FALSE(answer({"-session", "--help"}).has_value());
    EXPECT_EQ(answer({"-platform", "offscreen", "--version"}).value_or(CommandLine::Answer{}).text,
              std::string("Tarvane ") + Build::version + "\n");
}

}  // namespace CommandLineTests
}  // namespace TarvaneApp
