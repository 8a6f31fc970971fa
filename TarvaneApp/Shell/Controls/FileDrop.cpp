#include "Shell/Controls/FileDrop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <optional>

namespace TarvaneApp {

namespace {

std::optional<std::filesystem::path> fileOf(const QDropEvent& event) {
    const QList<QUrl> urls = event.mimeData()->urls();
    return urls.size() == 1 && urls.front().isLocalFile()
               ? std::optional(std::filesystem::path(urls.front().toLocalFile().toStdString()))
               : std::nullopt;
}

}  // namespace

FileDrop::FileDrop(QWidget& target, std::function<void(const std::filesystem::path&)> onFile)
    : QObject(&target), onFile_(std::move(onFile)) {
    target.setAcceptDrops(true);
    target.installEventFilter(this);
}

bool FileDrop::eventFilter(QObject* watched, QEvent* event) {
    const bool isDrop = event->type() == QEvent::Drop;
    if (!isDrop && event->type() != QEvent::DragEnter && event->type() != QEvent::DragMove) {
        return QObject::eventFilter(watched, event);
    }
    auto& drop = static_cast<QDropEvent&>(*event);
    const auto file = fileOf(drop);
    if (!file) {
        drop.ignore();
        return true;
    }
    drop.setDropAction(Qt::CopyAction);
    drop.accept();
    if (isDrop) {
        onFile_(*file);
    }
    return true;
}

}  // namespace TarvaneApp
