#include "Shell/Help/HelpBook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QRegularExpression>
#include <QString>

#include "Shell/Help/Prose.h"

namespace TarvaneApp {
namespace HelpBookTests {

using testing::ElementsAre;
using testing::Pair;

// Title, symbol and summary of every topic.
struct Entry {
    std::string title;
    std::string symbol;
    std::string summary;
    bool operator==(const Entry&) const = default;
};

std::vector<std::pair<std::string, std::vector<Entry>>> contents() {
    std::vector<std::pair<std::string, std::vector<Entry>>> groups;
    for (const HelpGroup& group : helpGroups()) {
        groups.push_back({group.title, {}});
        for (const HelpTopic& topic : group.topics) {
            groups.back().second.push_back({topic.title, topic.symbol, topic.summary});
        }
    }
    return groups;
}

TEST(HelpBookTests, topicsStandInTheirGroups) {
    EXPECT_THAT(
        contents(),
        ElementsAre(
            Pair("Basics",
                 ElementsAre(Entry{"Getting Started", "play.circle",
                                   "Pick an input and take your first reading in about a minute."},
                             Entry{"The Main Window", "macwindow",
                                   "What each part of the window and toolbar does."},
                             Entry{"Microphone Permissions", "lock.shield",
                                   "Microphone and system audio access."})),
            Pair("Modules",
                 ElementsAre(
                     Entry{"SPL Meter", "speedometer",
                           "The big number: current level, with Min and Max."},
                     Entry{"Real-Time Analyzer", "chart.bar.xaxis",
                           "The live spectrum, from full octave to 1/48 octave."},
                     Entry{"Spectrogram", "rectangle.grid.3x2",
                           "The spectrum over time, as a scrolling picture."},
                     Entry{"Level History", "chart.xyaxis.line",
                           "The whole session graphed, with the loudest and quietest moments."},
                     Entry{"Exporting Reports", "square.and.arrow.up",
                           "Save a session as a PDF report, an image or text."})),
            Pair(
                "Measuring",
                ElementsAre(
                    Entry{"Calibration", "tuningfork", "Turn raw digital levels into real dB SPL."},
                    Entry{"Input Gain & Clipping", "slider.horizontal.3",
                          "Set the preamp level so the input never clips."},
                    Entry{"Leq", "sum", "The energy-average level over time."},
                    Entry{"Loudness (LUFS)", "speaker.wave.3",
                          "Program loudness for broadcast, streaming and podcasts."},
                    Entry{"Ring-Out Alerts", "exclamationmark.triangle",
                          "Find feedback frequencies while ringing out a system."},
                    Entry{"Traffic Light", "circle.lefthalf.filled",
                          "Thresholds and colors that show at a glance where the level is."})),
            Pair(
                "Setup",
                ElementsAre(
                    Entry{"Channels", "square.stack.3d.up",
                          "Measure several inputs at the same time."},
                    Entry{"Stereo Pairs", "hifispeaker.2", "Read two inputs as one stereo source."},
                    Entry{
                        "Digital Feeds & System Output", "cable.connector",
                        "Console buses, network audio, loopback and the computer's own playback."},
                    Entry{"Channel Windows", "rectangle.on.rectangle",
                          "Give a channel a window of its own."},
                    Entry{"Window Layout", "rectangle.3.group",
                          "Arrange, pop out or hide each module."},
                    Entry{"Profiles", "person.crop.circle",
                          "Save a whole setup and recall it in one click."})),
            Pair("Reference", ElementsAre(Entry{"Keyboard Shortcuts", "keyboard",
                                                "Every shortcut in one place."},
                                          Entry{"Troubleshooting", "wrench.and.screwdriver",
                                                "Common problems and how to fix them."}))));
}

TEST(HelpBookTests, allTopicsAreThoseOfTheGroupsInOrder) {
    std::vector<std::string> titles;
    for (const HelpGroup& group : helpGroups()) {
        for (const HelpTopic& topic : group.topics) {
            titles.push_back(topic.title);
        }
    }
    std::vector<std::string> all;
    for (const HelpTopic& topic : allHelpTopics()) {
        all.push_back(topic.title);
        EXPECT_EQ(helpTopic(topic.title), &topic);
    }
    EXPECT_EQ(all, titles);
}

TEST(HelpBookTests, everyTopicHasItsSymbolAndEnoughToRead) {
    for (const HelpTopic& topic : allHelpTopics()) {
        EXPECT_TRUE(QFile::exists(":/icons/" + QString::fromStdString(topic.symbol) + ".svg"))
            << topic.symbol;
        qsizetype words = 0;
        for (const HelpBlock& block : topic.blocks) {
            for (const std::string& text : textsOf(block)) {
                EXPECT_FALSE(text.empty()) << topic.title;
                EXPECT_FALSE(plainProse(text).contains("**")) << text;
                words += QString::fromStdString(text).split(u' ', Qt::SkipEmptyParts).size();
            }
        }
        EXPECT_GE(words, 150) << topic.title;
        EXPECT_LE(words, 450) << topic.title;
    }
}

TEST(HelpBookTests, nothingIsOfAnotherPlatform) {
    const QRegularExpression foreign(
        "\\b(macOS|Mac|Finder|Dock|Core ?Audio|Apple|Microsoft|ASIO|Cmd|Command|Option|Registry)"
        "\\b|[⌘⇧⌥⌃]");
    for (const HelpTopic& topic : allHelpTopics()) {
        for (const HelpBlock& block : topic.blocks) {
            for (const std::string& text : textsOf(block)) {
                const auto found = foreign.match(QString::fromStdString(text));
                EXPECT_FALSE(found.hasMatch())
                    << topic.title << ": " << found.captured().toStdString();
            }
        }
    }
}

TEST(HelpBookTests, pagesFollowTheBook) {
    EXPECT_EQ(helpNeighbors("Getting Started").previous, nullptr);
    EXPECT_EQ(helpNeighbors("Getting Started").next->title, "The Main Window");
    EXPECT_EQ(helpNeighbors("Troubleshooting").previous->title, "Keyboard Shortcuts");
    EXPECT_EQ(helpNeighbors("Troubleshooting").next, nullptr);
    const auto& topics = allHelpTopics();
    for (std::size_t i = 1; i < topics.size(); ++i) {
        EXPECT_EQ(helpNeighbors(topics[i].title).previous, &topics[i - 1]);
        EXPECT_EQ(helpNeighbors(topics[i - 1].title).next, &topics[i]);
    }
}

TEST(HelpBookTests, aTitleThatNoTopicHasHasNoNeighbors) {
    EXPECT_EQ(helpTopic("Cheese"), nullptr);
    EXPECT_EQ(helpNeighbors("Cheese").previous, nullptr);
    EXPECT_EQ(helpNeighbors("Cheese").next, nullptr);
}

}  // namespace HelpBookTests
}  // namespace TarvaneApp
