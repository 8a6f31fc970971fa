#include "Shell/Controls/FileDrop.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <string>
#include <vector>

namespace TarvaneApp {
namespace FileDropTests {

class FileDropTests : public testing::Test {
  protected:
    FileDropTests() {
        new FileDrop(target,
                     [this](const std::filesystem::path& path) { files.push_back(path.string()); });
    }

    // Whether the target takes it.
    bool dragIn(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent event(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        event.ignore();
        QCoreApplication::sendEvent(&target, &event);
        return event.isAccepted();
    }
    void drop(const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDropEvent event(QPointF(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
    }

    QWidget target;
    std::vector<std::string> files;
};

TEST_F(FileDropTests, aFileIsTaken) {
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/mics/Mic Ä.txt"));
    EXPECT_TRUE(dragIn({file}));
    drop({file});
    EXPECT_EQ(files, std::vector<std::string>{"/mics/Mic Ä.txt"});
}

TEST_F(FileDropTests, severalFilesAndWhatIsNoneAreNot) {
    const QUrl file = QUrl::fromLocalFile(QStringLiteral("/mics/a.txt"));
    const QUrl far(QStringLiteral("https://example.org/a.txt"));
    for (const QList<QUrl>& urls : {QList<QUrl>{file, file}, QList<QUrl>{far}, QList<QUrl>{}}) {
        EXPECT_FALSE(dragIn(urls));
        drop(urls);
    }
    EXPECT_TRUE(files.empty());
}

}  // namespace FileDropTests
}  // namespace TarvaneApp
