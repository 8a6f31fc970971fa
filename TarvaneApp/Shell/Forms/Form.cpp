#include "Shell/Forms/Form.h"

#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

Form::Form(QWidget* parent) : QWidget(parent), column_(layOutColumn(this, Theme::Space::section)) {
    column_->addStretch(1);
}

FormSection& Form::addSection(const QString& title) {
    auto* section = new FormSection(title, this);
    addWidget(section);
    sections_.push_back(section);
    return *section;
}

// Ahead of the stretch, which stays last.
void Form::addWidget(QWidget* widget) {
    column_->insertWidget(column_->count() - 1, widget);
}

void Form::refresh() {
    if (isVisible()) {
        for (FormSection* section : sections_) {
            section->refresh();
        }
    }
}

void Form::showEvent(QShowEvent* event) {
    refresh();
    QWidget::showEvent(event);
}

}  // namespace TarvaneApp
