#include "Reports/LevelHistoryExporter.h"

#include <gmock/gmock.h>

#include <QBuffer>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>
#include <optional>

#include "Support/FullDisk.h"
#include "TarvaneApp/Reports/ReportFixture.h"

namespace TarvaneApp {
namespace LevelHistoryExporterTests {

using LevelHistoryExporter::Format;
using TarvaneKit::UUID;
using testing::ElementsAre;
using testing::IsEmpty;

class LevelHistoryExporterTests : public TarvaneTests::ReportFixture {
  protected:
    std::vector<LevelHistoryReportView> pages(const std::vector<UUID>& ids) {
        return LevelHistoryExporter::pages(ids, *engine, clock.now());
    }
    static QString text(const QByteArray& bytes) { return QString::fromUtf8(bytes); }

    // Two channels beside the main one, of which the first has something recorded.
    void recordOnMainAndStage() {
        stage = addChannel("Stage", "mic", 0);
        quiet = addChannel("Quiet", "desk", 0);
        start();
        play(2.0, -20.0);
        audio.feed("mic", {TarvaneTests::sine(1000.0, 0.1, 4800)});
        tick(stage.id);
    }

    static QByteArray contents(const QString& path) {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    // What is told when those bytes can't be written there.
    static std::string errorOf(const QByteArray& bytes, const QString& path) {
        try {
            LevelHistoryExporter::write(bytes, path);
        } catch (const LevelHistoryExporter::Error& error) {
            return error.what();
        }
        return "nothing";
    }

    ChannelConfig stage;
    ChannelConfig quiet;
};

TEST_F(LevelHistoryExporterTests, whatTheHistoryModuleShowsIsProposed) {
    EXPECT_THAT(LevelHistoryExporter::proposedChannels(*engine), IsEmpty());
    recordOnMainAndStage();
    EXPECT_THAT(LevelHistoryExporter::proposedChannels(*engine), ElementsAre(UUID::main()));
    engine->levelHistoryOverlayChannelIDs.set({stage.id, quiet.id});
    EXPECT_THAT(LevelHistoryExporter::proposedChannels(*engine),
                ElementsAre(UUID::main(), stage.id));
    engine->levelHistoryOverlayChannelIDs.set({});
    engine->levelHistoryChannelID.set(stage.id);
    EXPECT_THAT(LevelHistoryExporter::proposedChannels(*engine), ElementsAre(stage.id));
    engine->levelHistoryChannelID.set(quiet.id);  // has nothing: the first that has
    EXPECT_THAT(LevelHistoryExporter::proposedChannels(*engine), ElementsAre(UUID::main()));
}

TEST_F(LevelHistoryExporterTests, aChannelWithoutHistoryHasNoPage) {
    recordOnMainAndStage();
    EXPECT_EQ(pages({UUID::main(), quiet.id, UUID::random(), stage.id}).size(), 2U);
    EXPECT_THAT(pages({quiet.id}), IsEmpty());
    EXPECT_THROW(LevelHistoryExporter::render(Format::pdf, {}), LevelHistoryExporter::Error);
}

TEST_F(LevelHistoryExporterTests, theTextIsThatOfTheReports) {
    recordOnMainAndStage();
    const auto both = pages({UUID::main(), stage.id});
    EXPECT_EQ(text(LevelHistoryExporter::render(Format::text, both)),
              LevelHistoryReport::plainText({both[0].report, both[1].report}));
}

TEST_F(LevelHistoryExporterTests, anImageStacksItsPagesAtTwiceTheirSize) {
    recordOnMainAndStage();
    const auto both = pages({UUID::main(), stage.id});
    const QImage image = QImage::fromData(LevelHistoryExporter::render(Format::png, both), "PNG");
    EXPECT_EQ(image.width(), 2800);
    EXPECT_EQ(image.height(), 2.0 * (both[0].size().height() + both[1].size().height()));
    // The two pages lie under each other, not over each other: both have letters in their heads.
    const auto isBlank = [&image](int from, int to) {
        for (int y = from; y < to; ++y) {
            for (int x = 0; x < image.width(); ++x) {
                if (image.pixel(x, y) != Theme::background.rgb()) {
                    return false;
                }
            }
        }
        return true;
    };
    const int second = static_cast<int>(2.0 * both[0].size().height());
    EXPECT_TRUE(isBlank(0, 50));
    EXPECT_FALSE(isBlank(50, 130));
    EXPECT_TRUE(isBlank(second - 50, second + 50));
    EXPECT_FALSE(isBlank(second + 50, second + 130));
}

TEST_F(LevelHistoryExporterTests, aDocumentNamesItsProgramAndTitle) {
    recordOnMainAndStage();
    const QByteArray pdf =
        LevelHistoryExporter::render(Format::pdf, pages({UUID::main(), stage.id}));
    EXPECT_TRUE(pdf.startsWith("%PDF-1."));
    EXPECT_TRUE(pdf.contains("/CreationDate"));
    EXPECT_TRUE(pdf.contains("/Count 2"));
    EXPECT_TRUE(pdf.contains("/MediaBox [0 0 1400"));
}

TEST_F(LevelHistoryExporterTests, threeChannelsAreThreePages) {
    recordOnMainAndStage();
    audio.feed("desk", std::vector<std::vector<float>>(8, TarvaneTests::sine(1000.0, 0.1, 4800)));
    tick(quiet.id);
    const auto three = pages({UUID::main(), stage.id, quiet.id});
    ASSERT_EQ(three.size(), 3U);
    EXPECT_TRUE(LevelHistoryExporter::render(Format::pdf, three).contains("/Count 3"));
    const QImage image = QImage::fromData(LevelHistoryExporter::render(Format::png, three), "PNG");
    EXPECT_EQ(image.width(), 2800);
    double height = 0.0;
    for (const auto& page : three) {
        height += 2.0 * page.size().height();
    }
    EXPECT_EQ(image.height(), height);
}

// Told, and no memory taken for it.
TEST_F(LevelHistoryExporterTests, hundredsOfPagesAreNoImage) {
    recordOnMainAndStage();
    const std::vector<LevelHistoryReportView> many(400, pages({UUID::main()})[0]);
    EXPECT_THROW(LevelHistoryExporter::render(Format::png, many), LevelHistoryExporter::Error);
}

// Once made, a page asks the engine for nothing.
TEST_F(LevelHistoryExporterTests, aPageStaysAsItWasMade) {
    recordOnMainAndStage();
    const auto made = pages({UUID::main()});
    const QByteArray before = LevelHistoryExporter::render(Format::png, made);
    play(5.0, -6.0);
    EXPECT_EQ(LevelHistoryExporter::render(Format::png, made), before);
    EXPECT_NE(LevelHistoryExporter::render(Format::png, pages({UUID::main()})), before);
    engine.reset();
    EXPECT_EQ(LevelHistoryExporter::render(Format::png, made), before);
}

// Read by another program than the one that made it.
TEST_F(LevelHistoryExporterTests, aDocumentsTextsAreFoundBySearching) {
    recordOnMainAndStage();
    const auto both = pages({UUID::main(), stage.id});
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Report.pdf"));
    LevelHistoryExporter::write(LevelHistoryExporter::render(Format::pdf, both), path);
    const auto output = [](const QString& program, const QStringList& arguments) {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(-1)) << program.toStdString();
        return QString::fromUtf8(process.readAllStandardOutput());
    };
    for (int number = 1; number <= 2; ++number) {
        const QString page = QString::number(number);
        const QString text = output(QStringLiteral("pdftotext"),
                                    {QStringLiteral("-layout"), QStringLiteral("-f"), page,
                                     QStringLiteral("-l"), page, path, QStringLiteral("-")});
        const LevelHistoryReport& report = both[static_cast<std::size_t>(number) - 1].report;
        EXPECT_TRUE(text.contains(report.title)) << text.toStdString();
        EXPECT_TRUE(text.contains(report.subtitle));
        EXPECT_TRUE(text.contains(report.footnote));
        for (const auto& section : report.sections) {
            EXPECT_TRUE(text.contains(section.title)) << section.title.toStdString();
            for (const auto& row : section.rows) {
                EXPECT_TRUE(text.contains(row.label)) << row.label.toStdString();
                EXPECT_TRUE(text.contains(row.value)) << row.value.toStdString();
            }
        }
    }
    const QString facts =
        output(QStringLiteral("pdfinfo"), {QStringLiteral("-f"), QStringLiteral("1"),
                                           QStringLiteral("-l"), QStringLiteral("2"), path});
    for (int number = 1; number <= 2; ++number) {
        const auto height = both[static_cast<std::size_t>(number) - 1].size().height();
        EXPECT_TRUE(facts.contains(QRegularExpression(
            QStringLiteral("Page +%1 size: +1400 x %2 pts").arg(number).arg(height))))
            << facts.toStdString();
    }
    EXPECT_TRUE(facts.contains(QRegularExpression(QStringLiteral("Pages: +2\\b"))));
    EXPECT_TRUE(facts.contains(
        QRegularExpression(QStringLiteral("Title: +") + both[0].report.title + u'\n')));
    EXPECT_TRUE(facts.contains(QRegularExpression(QStringLiteral("Creator: +\\S.* 7\\.8\\.9\n"))));
    EXPECT_TRUE(facts.contains(QRegularExpression(QStringLiteral("CreationDate: +\\S"))));
    // The author, for which the facts have no place.
    EXPECT_TRUE(output(QStringLiteral("pdfinfo"), {QStringLiteral("-meta"), path})
                    .contains(QRegularExpression(
                        QStringLiteral("<dc:creator><rdf:Seq><rdf:li>.* 7\\.8\\.9</rdf:li>"))));
    // Of each font a row, behind two lines of heading, that says whether it lies in the file.
    const QStringList fonts =
        output(QStringLiteral("pdffonts"), {path}).split(u'\n', Qt::SkipEmptyParts).mid(2);
    EXPECT_FALSE(fonts.isEmpty());
    for (const QString& font : fonts) {
        EXPECT_TRUE(font.contains(QRegularExpression(QStringLiteral("Identity-H +yes"))))
            << font.toStdString();
    }
}

TEST_F(LevelHistoryExporterTests, aFileIsReplacedAsAWholeOrNotAtAll) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Report.txt"));
    LevelHistoryExporter::write("first", path);
    LevelHistoryExporter::write("second", path);
    EXPECT_EQ(contents(path), "second");
    EXPECT_THROW(LevelHistoryExporter::write("x", folder.filePath(QStringLiteral("no/where.txt"))),
                 LevelHistoryExporter::Error);
    EXPECT_THROW(LevelHistoryExporter::write("x", folder.path()), LevelHistoryExporter::Error);
    EXPECT_EQ(::mkfifo(qPrintable(folder.filePath(QStringLiteral("pipe"))), 0600), 0);
    EXPECT_THROW(LevelHistoryExporter::write("x", folder.filePath(QStringLiteral("pipe"))),
                 LevelHistoryExporter::Error);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files),
              QStringList{QStringLiteral("Report.txt")});
}

TEST_F(LevelHistoryExporterTests, aFullDiskLeavesTheOldFileWhole) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Report.txt"));
    LevelHistoryExporter::write("of last night", path);
    std::optional<TarvaneTests::FullDisk> full(1024);
    EXPECT_EQ(errorOf(QByteArray(100000, 'x'), path), "File too large");
    full.reset();
    EXPECT_EQ(contents(path), "of last night");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files),
              QStringList{QStringLiteral("Report.txt")});
}

// The superuser may write anywhere, so the test is somebody else for a moment.
TEST_F(LevelHistoryExporterTests, aFolderThatMayOnlyBeReadKeepsItsFile) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("Report.txt"));
    LevelHistoryExporter::write("of last night", path);
    ASSERT_EQ(::chmod(qPrintable(path), 0666), 0);
    ASSERT_EQ(::chmod(qPrintable(folder.path()), 0555), 0);
    const uid_t user = geteuid();
    if (user == 0) {
        ASSERT_EQ(seteuid(65534), 0);
    }
    EXPECT_EQ(errorOf("x", path), "Permission denied");
    ASSERT_EQ(seteuid(user), 0);
    ASSERT_EQ(::chmod(qPrintable(folder.path()), 0755), 0);
    EXPECT_EQ(contents(path), "of last night");
}

TEST_F(LevelHistoryExporterTests, aPageIsAsHighAsItsTextNeeds) {
    start();
    play(2.0, -20.0);
    const auto page = pages({UUID::main()})[0];
    EXPECT_EQ(page.size().width(), 1400.0);
    auto longer = page;
    for (int i = 0; i < 10; ++i) {
        longer.report.sections.back().rows.push_back({QStringLiteral("More"), QStringLiteral("x")});
    }
    EXPECT_GT(longer.size().height(), page.size().height() + 10.0 * 12.0);
    // A value that is too long for its column goes on in a further line.
    auto broken = page;
    broken.report.sections[0].rows[1].value = QString(500, u'm');
    EXPECT_GT(broken.size().height(), page.size().height() + 12.0);
}

}  // namespace LevelHistoryExporterTests
}  // namespace TarvaneApp
