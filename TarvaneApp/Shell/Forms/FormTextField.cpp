#include "Shell/Forms/FormTextField.h"

#include <QKeyEvent>

namespace TarvaneApp {

FormTextField::FormTextField(Counts counts, std::function<void(const QString&)> onText,
                             QWidget* parent)
    : QLineEdit(parent), onText_(std::move(onText)), counts_(counts) {
    if (counts == Counts::asTyped) {
        connect(this, &QLineEdit::textEdited, this, onText_);
    }
    connect(this, &QLineEdit::editingFinished, this, &FormTextField::finish);
}

void FormTextField::showText(const QString& text) {
    shown_ = text;
    const bool isTyping = isModified() && counts_ == Counts::whenDone;
    if (!isTyping && this->text() != text) {
        setText(text);
    }
}

// Not by the focus: another window in front ends no editing.
void FormTextField::finish() {
    if (!isModified()) {
        return;
    }
    setModified(false);
    if (counts_ == Counts::whenDone && text() != shown_) {
        onText_(text());
    }
}

void FormTextField::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape && counts_ == Counts::whenDone && isModified()) {
        setText(shown_);
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

// A form that closes under a field takes no focus from it.
void FormTextField::hideEvent(QHideEvent* event) {
    if (!event->spontaneous()) {
        finish();
    }
    QLineEdit::hideEvent(event);
}

}  // namespace TarvaneApp
