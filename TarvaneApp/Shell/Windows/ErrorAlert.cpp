#include "Shell/Windows/ErrorAlert.h"

#include <QApplication>
#include <QMessageBox>

namespace TarvaneApp {

ErrorAlert::ErrorAlert(const QString& title, const Message& message, std::function<void()> dismiss,
                       QWidget* window)
    : QObject(window),
      title_(title),
      message_(message),
      dismiss_(std::move(dismiss)),
      window_(window) {
    follow(message, this, [this] { messageChanged(); });
}

void ErrorAlert::messageChanged() {
    const auto& message = message_();
    if (!message) {
        if (box_) {
            box_->close();
        }
        return;
    }
    if (!box_) {
        QWidget* active = QApplication::activeWindow();
        box_ = new QMessageBox(QMessageBox::Warning, title_, QString(), QMessageBox::Ok,
                               active != nullptr ? active : window_);
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
