#include "Shell/Controls/NoteBar.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "Displays/Theme.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/Spinner.h"

namespace TarvaneApp {

namespace {

QPushButton* makeButton(const QString& text, QWidget* parent) {
    auto* button = new QPushButton(text, parent);
    button->setAutoDefault(false);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

}  // namespace

NoteBar::NoteBar(QWidget* parent)
    : QWidget(parent),
      row_(new QHBoxLayout(this)),
      spinner_(new Spinner(this)),
      text_(new ElidedLabel(Theme::Text::body, Theme::primaryText, this)) {
    row_->setContentsMargins(Theme::Margins::row);
    row_->setSpacing(Theme::Space::row);
    spinner_->setFixedSize(Theme::Symbol::toolbar, Theme::Symbol::toolbar);
    spinner_->hide();
    row_->addWidget(spinner_);
    row_->addWidget(text_, 1);
    auto* dismiss = makeButton(QStringLiteral("Dismiss"), this);
    connect(dismiss, &QPushButton::clicked, this, &QWidget::hide);
    row_->addWidget(dismiss);
    hide();
}

void NoteBar::say(const QString& text, const std::vector<Button>& buttons) {
    for (QWidget* old : buttons_) {
        old->hide();
        old->deleteLater();  // its press may be what says the next
    }
    buttons_.clear();
    spinner_->hide();
    text_->setText(text);
    for (const Button& button : buttons) {
        auto* made = makeButton(button.text, this);
        connect(made, &QPushButton::clicked, this, button.press);
        row_->insertWidget(row_->count() - 1, made);
        buttons_.push_back(made);
    }
    show();
}

void NoteBar::sayAtWork(const QString& text) {
    say(text, {});
    spinner_->show();
}

}  // namespace TarvaneApp
