#include "Shell/Windows/ErrorAlert.h"

#include <QApplication>
#include <QEvent>
#include <QMessageBox>

namespace TarvaneApp {

ErrorAlert::ErrorAlert(const QString& title, const Message& message, std::function<void()> dismiss,
                       QWidget* window)
    : QObject(window),
      title_(title),
      message_(message),
      dismiss_(std::move(dismiss)),
      window_(window),
      hasAppeared_(window->isVisible()) {
    if (!hasAppeared_) {
        window->installEventFilter(this);
    }
    follow(message, this, [this] { messageChanged(); });
}

// An alert that the window system gets ahead of the window would lie under it.
bool ErrorAlert::eventFilter(QObject* window, QEvent* event) {
    if (event->type() == QEvent::Show && !hasAppeared_) {
        hasAppeared_ = true;
        QMetaObject::invokeMethod(this, &ErrorAlert::messageChanged, Qt::QueuedConnection);
    }
    return QObject::eventFilter(window, event);
}

// A dialog that is answered takes what lies over it along.
QWidget* ErrorAlert::usersWindow() const {
    QWidget* active = QApplication::activeWindow();
    while (qobject_cast<QDialog*>(active) != nullptr) {
        active = active->parentWidget() != nullptr ? active->parentWidget()->window() : nullptr;
    }
    return active != nullptr ? active : window_;
}

void ErrorAlert::messageChanged() {
    const auto& message = message_();
    if (!message) {
        if (box_) {
            box_->close();
        }
        return;
    }
    if (!hasAppeared_) {
        return;
    }
    if (!box_) {
        box_ = new QMessageBox(QMessageBox::Warning, title_, QString(), QMessageBox::Ok,
                               usersWindow());
        box_->setAttribute(Qt::WA_DeleteOnClose);
        box_->setTextFormat(Qt::PlainText);
        connect(box_, &QDialog::finished, this, [this] {
            box_ = nullptr;
            if (message_()) {
                dismiss_();
            }
        });
    }
    box_->setText(QString::fromStdString(*message));
    box_->open();
}

}  // namespace TarvaneApp
