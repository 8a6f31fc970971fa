// Any names and numbers that a store, a profile, a device or a clock may bring: each report is a
// text of whole lines, a picture whose margins are free and a document that another program opens.
// A failure names the seed of its session.
#include <gmock/gmock.h>

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <random>

#include "Reports/LevelHistoryExporter.h"
#include "TarvaneApp/Reports/ReportFixture.h"

namespace TarvaneApp {
namespace LevelHistoryExporterRandomTests {

using LevelHistoryExporter::Format;
using TarvaneKit::UUID;

class Dice {
  public:
    explicit Dice(unsigned seed) : random_(seed) {}

    int below(int end) { return std::uniform_int_distribution(0, end - 1)(random_); }
    bool coin() { return below(2) == 0; }

    // Letters of every kind of script, marks, controls, halves of nothing; rarely very long.
    std::string name() {
        static const std::vector<std::string> pieces{"a",
                                                     "Mic",
                                                     " ",
                                                     "/",
                                                     "\"",
                                                     "\n",
                                                     "\r\n",
                                                     "\t",
                                                     "\x01",
                                                     "\u2028",
                                                     "\u202E",
                                                     "\u2067",
                                                     "\uFFFE",
                                                     "<b>",
                                                     "&amp;",
                                                     "%1",
                                                     "%n",
                                                     "ffi",
                                                     "שלום",
                                                     "مرحبا",
                                                     "日本語",
                                                     "\U0001F3A4",
                                                     "e\u0301\u0301",
                                                     "\u200D",
                                                     "\xFF\xC0",
                                                     ")(",
                                                     "\\",
                                                     "—",
                                                     "ẞ",
                                                     "Ω"};
        std::string name;
        const int length = below(20) == 0 ? 3000 : below(12);
        for (int i = 0; i < length; ++i) {
            name += pieces[static_cast<std::size_t>(below(static_cast<int>(pieces.size())))];
        }
        return name;
    }

    double number() {
        switch (below(8)) {
            case 0:
                return std::numeric_limits<double>::quiet_NaN();
            case 1:
                return coin() ? 1e300 : -1e300;
            case 2:
                return coin() ? 1e12 : -1e12;
            case 3:
                return std::numeric_limits<double>::infinity();
            case 4:
                return 5e-324;
            default:
                return std::uniform_real_distribution(-200.0, 200.0)(random_);
        }
    }
    double possibleLevel() { return std::uniform_real_distribution(-1000.0, 1000.0)(random_); }

  private:
    std::mt19937 random_;
};

class LevelHistoryExporterRandomTests : public TarvaneTests::ReportFixture {
  protected:
    void setUp(Dice& dice) {
        audio.plugIn({.id = 50, .uid = "any", .name = dice.name(), .channelCount = 2});
        makeEngine();
        TarvaneKit::CalibrationProfile profile;
        if (dice.coin()) {
            profile.reference.emplace();
            profile.reference->offsetDB = dice.number();
        }
        engine->calibration.set(profile);
        engine->mainInputMeasuresLoudness.set(dice.coin());
        engine->levelHistoryShowsMomentary.set(dice.coin());
        engine->splReadoutShowsDBFS.set(dice.coin());
        engine->metricMode.set(dice.coin() ? MetricMode::spl : MetricMode::peak);
        LoudnessTarget target{.name = dice.name(),
                              .targetLUFS = dice.possibleLevel(),
                              .toleranceLU = std::abs(dice.possibleLevel())};
        engine->loudnessTarget.set(target);
        std::vector<TarvaneKit::TrafficLightBand> bands(static_cast<std::size_t>(dice.below(6)));
        for (auto& band : bands) {
            band.thresholdDB = dice.possibleLevel();
        }
        engine->trafficLightConfigDBFS.set(
            TarvaneKit::TrafficLightConfig::create("Own", bands, {}));
        addChannel(dice.name(), "any", 1);
        // Every session's adds to those before: a year each ends ahead of what a date can tell.
        clock.setWallClockBy(dice.below(3) == 0 ? 0.0 : dice.below(31'000'000));
        start();
    }

    void recordAnything(Dice& dice, const UUID& id) {
        auto& history = TarvaneTests::EngineInsides::levelHistory(*engine, id);
        std::vector<double> levels(history.metrics().size());
        double elapsed = 0.0;
        for (int n = dice.below(300); n >= 0; --n) {
            // Up to two months of a forgotten meter.
            elapsed += dice.below(30) == 0 ? dice.below(200'000) : dice.below(20) / 10.0;
            for (double& level : levels) {
                level = dice.number();
            }
            history.record(levels, elapsed);
        }
        auto& now = live(id);
        for (int n = dice.below(4); n > 0; --n) {
            now.lostAudio.push_back({.elapsed = elapsed * dice.below(3),
                                     .seconds = dice.below(100) / 7.0,
                                     .count = 1 + dice.below(9)});
        }
        if (dice.coin()) {
            now.loudness.emplace();
            now.loudness->integrated = dice.number();
            now.loudness->range = dice.number();
            now.loudness->truePeakMax = dice.number();
        }
    }

    static void expectWholeLines(const LevelHistoryReport& report) {
        const QString text = report.plainText();
        qsizetype lines = 4;  // title, subtitle, a blank one and the footnote
        for (const auto& section : report.sections) {
            lines += 2 + static_cast<qsizetype>(section.rows.size());
        }
        EXPECT_EQ(text.count(u'\n'), lines) << text.toStdString();
        EXPECT_TRUE(text.endsWith(report.footnote + u'\n'));
        for (const QChar character : text) {
            EXPECT_TRUE(character == u'\n' || character.isPrint() ||
                        character.category() == QChar::Other_Format ||
                        character.category() == QChar::Other_Surrogate)
                << static_cast<int>(character.unicode());
        }
    }

    // The page's padding of 28 points, at two pixels each.
    static void expectFreeMargins(const QByteArray& bytes) {
        const QImage image = QImage::fromData(bytes, "PNG");
        ASSERT_EQ(image.width(), 2800);
        int inked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < 50; ++x) {
                inked += image.pixel(x, y) != Theme::background.rgb() ? 1 : 0;
                inked += image.pixel(2799 - x, y) != Theme::background.rgb() ? 1 : 0;
            }
        }
        EXPECT_EQ(inked, 0);
    }

    void expectDocument(const QByteArray& bytes, std::size_t pageCount) {
        const QString path = folder.filePath(QStringLiteral("Report.pdf"));
        LevelHistoryExporter::write(bytes, path);
        QProcess reader;
        reader.start(QStringLiteral("pdfinfo"), {path});
        EXPECT_TRUE(reader.waitForFinished(-1));
        EXPECT_EQ(reader.exitCode(), 0);
        EXPECT_EQ(reader.readAllStandardError(), QByteArray());
        EXPECT_THAT(reader.readAllStandardOutput().toStdString(),
                    testing::ContainsRegex("Pages: +" + std::to_string(pageCount) + "\n"));
    }

    // What archives read of it is XML, whatever the names are.
    void expectMetadata() {
        QProcess reader;
        reader.start(QStringLiteral("pdfinfo"),
                     {QStringLiteral("-meta"), folder.filePath(QStringLiteral("Report.pdf"))});
        EXPECT_TRUE(reader.waitForFinished(-1));
        QXmlStreamReader xml(reader.readAllStandardOutput());
        while (!xml.atEnd()) {
            xml.readNext();
        }
        EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    }

    const QTemporaryDir folder;
};

TEST_F(LevelHistoryExporterRandomTests, anyNamesAndNumbersGiveAReport) {
    constexpr unsigned sessions = 12;
    for (unsigned seed = 1; seed <= sessions; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Dice dice(seed);
        setUp(dice);
        for (const ChannelInfo& channel : engine->channelInfos()) {
            recordAnything(dice, channel.id);
        }
        std::vector<UUID> ids;
        for (const ChannelInfo& channel : LevelHistoryReport::exportableChannels(*engine)) {
            ids.push_back(channel.id);
        }
        const auto pages = LevelHistoryExporter::pages(ids, *engine, clock.now());
        ASSERT_FALSE(pages.empty());
        std::vector<LevelHistoryReport> reports;
        for (const LevelHistoryReportView& page : pages) {
            expectWholeLines(page.report);
            reports.push_back(page.report);
        }
        const QString name = LevelHistoryReport::suggestedFileName({reports.back()}, clock.now());
        EXPECT_LE(name.toUtf8().size(), 240);
        EXPECT_FALSE(name.contains(u'/'));
        expectFreeMargins(LevelHistoryExporter::render(Format::png, pages));
        expectDocument(LevelHistoryExporter::render(Format::pdf, pages), pages.size());
        expectMetadata();
        engine->stop();
        engine->extraChannels.set({});
        audio.unplug("any");
        if (HasFailure()) {
            break;
        }
    }
}

}  // namespace LevelHistoryExporterRandomTests
}  // namespace TarvaneApp
