#include "Shell/Windows/ErrorAlert.h"

#include <QMessageBox>

#include "Engine/MeterEngine.h"

namespace TarvaneApp {

ErrorAlert::ErrorAlert(MeterEngine& engine, QWidget* window)
    : QObject(window), engine_(engine), window_(window) {
    follow(engine.errorMessage, this, [this] { messageChanged(); });
}

void ErrorAlert::messageChanged() {
    const auto& message = engine_.errorMessage();
    if (!message) {
        if (box_) {
            box_->close();
        }
        return;
    }
    if (!box_) {
        box_ = new QMessageBox(QMessageBox::Warning, QStringLiteral("Error"), QString(),
                               QMessageBox::Ok, window_);
        box_->setAttribute(Qt::WA_DeleteOnClose);
        box_->setTextFormat(Qt::PlainText);
        connect(box_, &QDialog::finished, this, [this] {
            box_ = nullptr;
            if (engine_.errorMessage()) {
                engine_.dismissError();
            }
        });
    }
    box_->setText(QString::fromStdString(*message));
    box_->open();
}

}  // namespace TarvaneApp
