#include "Shell/Windows/LevelHistoryExport.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <filesystem>

#include "Shell/Controls/NoteBar.h"
#include "Shell/Controls/Spinner.h"
#include "Shell/Windows/ExportOptions.h"
#include "Support/TemporaryFolder.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace LevelHistoryExportTests {

using TarvaneKit::UUID;
using testing::ElementsAre;

class LevelHistoryExportTests : public TarvaneTests::EngineFixture {
  protected:
    LevelHistoryExportTests() {
        store.setText("ExportLevelHistory.folder", folder.path().string());
        window.show();
    }

    void record() {
        start();
        for (int i = 0; i < 20; ++i) {
            clock.advance(0.1);
            audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 4800)});
            tick();
        }
    }
    QFileDialog* panel() { return window.findChild<QFileDialog*>(); }
    ExportOptions& options() { return *panel()->findChild<ExportOptions*>(); }
    QComboBox& format() { return *options().findChild<QComboBox*>(); }
    QString proposed() {
        const QStringList files = panel()->selectedFiles();
        return files.isEmpty() ? QString() : QFileInfo(files.front()).fileName();
    }
    void save(const QString& name) {
        panel()->selectFile(name);
        settle();
        Q_EMIT panel()->fileSelected(
            QString::fromStdString((folder.path() / name.toStdString()).string()));
        panel()->close();
        settle();
    }
    QString said() { return note.findChild<QLabel*>()->text(); }
    void saveWhole(const QString& name) {
        save(name);
        waitUntil(
            [&] { return said() == QStringLiteral("Exported ") + QFileInfo(name).fileName(); });
    }
    QByteArray written(const char* name) {
        QFile file(QString::fromStdString((folder.path() / name).string()));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    const TarvaneTests::TemporaryFolder folder;
    QWidget window;
    NoteBar note{&window};
    LevelHistoryExport exporting{{.engine = *engine, .store = store, .note = note}, &window};
};

TEST_F(LevelHistoryExportTests, withoutASessionItSaysSoAndAsksNothing) {
    exporting.begin();
    EXPECT_EQ(engine->errorMessage(),
              "There's no level history to export yet. Press Start to record a session.");
    EXPECT_EQ(panel(), nullptr);
}

TEST_F(LevelHistoryExportTests, aSingleChannelIsNotAskedFor) {
    record();
    exporting.begin();
    ASSERT_NE(panel(), nullptr);
    EXPECT_EQ(panel()->windowTitle(), QStringLiteral("Export Level History"));
    EXPECT_TRUE(options().findChildren<QCheckBox*>().isEmpty());
    EXPECT_THAT(options().selectedChannelIDs(), ElementsAre(UUID::main()));
    EXPECT_TRUE(proposed().startsWith(QStringLiteral("Level History Main Input 2026-03-01")));
}

TEST_F(LevelHistoryExportTests, theExtensionFollowsTheFormat) {
    record();
    exporting.begin();
    EXPECT_TRUE(proposed().endsWith(QStringLiteral(".pdf")));
    format().setCurrentIndex(2);
    EXPECT_TRUE(proposed().endsWith(QStringLiteral(".txt"))) << proposed().toStdString();
    EXPECT_EQ(panel()->defaultSuffix(), QStringLiteral("txt"));
    format().setCurrentIndex(1);
    EXPECT_TRUE(proposed().endsWith(QStringLiteral(".png"))) << proposed().toStdString();
}

TEST_F(LevelHistoryExportTests, theLastCheckedChannelStaysChecked) {
    const ChannelConfig stage = addChannel("Stage & Hall", "mic", 0);
    record();
    audio.feed("mic", {TarvaneTests::sine(1000.0, 0.1, 4800)});
    tick(stage.id);
    exporting.begin();
    const auto boxes = options().findChildren<QCheckBox*>();
    ASSERT_EQ(boxes.size(), 2);
    EXPECT_EQ(boxes[1]->text(), QStringLiteral("Stage && Hall"));
    EXPECT_TRUE(boxes[0]->isChecked());  // what the history shows
    EXPECT_FALSE(boxes[1]->isChecked());
    boxes[0]->click();
    EXPECT_TRUE(boxes[0]->isChecked());
    boxes[1]->click();
    boxes[0]->click();
    EXPECT_THAT(options().selectedChannelIDs(), ElementsAre(stage.id));
}

TEST_F(LevelHistoryExportTests, eachFormatIsWrittenAndTheNoteSaysSo) {
    record();
    exporting.begin();
    saveWhole(QStringLiteral("a.pdf"));
    EXPECT_TRUE(written("a.pdf").startsWith("%PDF"));
    EXPECT_TRUE(note.isVisible());
    exporting.begin();
    format().setCurrentIndex(1);
    saveWhole(QStringLiteral("a.png"));
    EXPECT_TRUE(written("a.png").mid(1, 3) == "PNG");
    exporting.begin();
    format().setCurrentIndex(2);
    saveWhole(QStringLiteral("a.txt"));
    EXPECT_TRUE(written("a.txt").startsWith("Main Input"));
    EXPECT_TRUE(written("a.txt").endsWith('\n'));
    EXPECT_EQ(store.text("ExportLevelHistory.folder"), folder.path().string());
}

TEST_F(LevelHistoryExportTests, theFolderOfTheLastReportIsOfferedForTheNext) {
    const auto tour = folder.path() / "tour";
    std::filesystem::create_directory(tour);
    record();
    exporting.begin();
    EXPECT_EQ(panel()->directory().absolutePath().toStdString(), folder.path().string());
    saveWhole(QStringLiteral("tour/a.txt"));
    exporting.begin();
    EXPECT_EQ(panel()->directory().absolutePath().toStdString(), tour.string());
    panel()->reject();
    settle();
    std::filesystem::remove_all(tour);  // a stick that was pulled out
    exporting.begin();
    EXPECT_NE(panel()->directory().absolutePath().toStdString(), tour.string());
}

TEST_F(LevelHistoryExportTests, theNoteOpensTheFileOrItsFolder) {
    // In the desktop's place.
    QTextBrowser opener;
    QDesktopServices::setUrlHandler(QStringLiteral("file"), &opener, "setSource");
    record();
    exporting.begin();
    saveWhole(QStringLiteral("a.pdf"));
    const auto press = [this](const char* text) {
        for (QPushButton* button : note.findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String(text) && button->isVisible()) {
                button->click();
            }
        }
    };
    const QString shown = QString::fromStdString(folder.path().string());
    press("Open");
    EXPECT_EQ(opener.source().toLocalFile(), shown + QStringLiteral("/a.pdf"));
    press("Show in File Manager");
    EXPECT_EQ(opener.source().toLocalFile(), shown);
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
}

TEST_F(LevelHistoryExportTests, whatCannotBeWrittenIsToldAndLeavesNoNote) {
    record();
    exporting.begin();
    save(QStringLiteral("no/where.pdf"));
    waitUntil([this] { return engine->errorMessage().has_value(); });
    EXPECT_TRUE(engine->errorMessage()->starts_with("Couldn't export the level history: "));
    EXPECT_FALSE(note.isVisible());
}

// Not one turn of the event loop passes between the choice and the note.
TEST_F(LevelHistoryExportTests, whileAFileIsMadeTheNoteSaysSoAndTheSessionGoesOn) {
    record();
    exporting.begin();
    format().setCurrentIndex(2);
    Q_EMIT panel()->fileSelected(QString::fromStdString((folder.path() / "a.txt").string()));
    EXPECT_EQ(said(), QStringLiteral("Exporting a.txt…"));
    EXPECT_TRUE(note.findChild<Spinner*>()->isVisible());
    record();
    waitUntil([this] { return said() == QStringLiteral("Exported a.txt"); });
    EXPECT_FALSE(note.findChild<Spinner*>()->isVisible());
    // What came in behind the choice is in the next report.
    EXPECT_TRUE(written("a.txt").contains("(0:02, still recording)")) << written("a.txt").data();
}

TEST_F(LevelHistoryExportTests, theProgramsEndWaitsForAFileThatWasAskedFor) {
    record();
    auto last = std::make_unique<LevelHistoryExport>(
        LevelHistoryExport::Environment{.engine = *engine, .store = store, .note = note}, &window);
    last->begin();
    format().setCurrentIndex(1);
    for (const char* name : {"a.png", "b.png"}) {
        Q_EMIT panel()->fileSelected(QString::fromStdString((folder.path() / name).string()));
    }
    last.reset();
    EXPECT_EQ(QImage::fromData(written("a.png"), "PNG").width(), 2800);
    EXPECT_EQ(QImage::fromData(written("b.png"), "PNG").width(), 2800);
}

// The dialog itself asks, as a system test shows.
TEST_F(LevelHistoryExportTests, aFileThatIsThereIsNotWrittenOverWithoutAsking) {
    record();
    exporting.begin();
    EXPECT_EQ(panel()->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_FALSE(panel()->testOption(QFileDialog::DontConfirmOverwrite));
}

// The dialog reads quotes as the ends of several names.
TEST_F(LevelHistoryExportTests, aNameWithQuotesIsOneName) {
    const ChannelConfig stage = addChannel("Mic \"A\" / left", "mic", 0);
    engine->levelHistoryChannelID.set(stage.id);
    record();
    audio.feed("mic", {TarvaneTests::sine(1000.0, 0.1, 4800)});
    tick(stage.id);
    exporting.begin();
    EXPECT_TRUE(proposed().startsWith(QStringLiteral("Level History Mic 'A' - left 2026-03-01")))
        << proposed().toStdString();
    format().setCurrentIndex(2);
    EXPECT_TRUE(proposed().startsWith(QStringLiteral("Level History Mic 'A' - left 2026-03-01")));
    EXPECT_TRUE(proposed().endsWith(QStringLiteral(".txt")));
}

TEST_F(LevelHistoryExportTests, aChannelThatHasGoneMeanwhileIsLeftOut) {
    record();
    exporting.begin();
    engine->stop();
    start();  // a new session, in which nothing is recorded yet
    save(QStringLiteral("a.pdf"));
    EXPECT_EQ(engine->errorMessage(), "The selected channels have no level history to export.");
    EXPECT_TRUE(written("a.pdf").isEmpty());
}

}  // namespace LevelHistoryExportTests
}  // namespace TarvaneApp
