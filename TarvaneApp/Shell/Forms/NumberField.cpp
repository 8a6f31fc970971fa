#include "Shell/Forms/NumberField.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "Core/DecimalNumber.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int fieldWidth = 90;

}  // namespace

NumberField::NumberField(Scale scale, std::function<void(double)> onNumber, QWidget* parent)
    : QWidget(parent),
      scale_(std::move(scale)),
      field_(new QLineEdit(this)),
      problem_(makeTextLabel(scale_.problem, Theme::Text::caption, Theme::peakHold, this)) {
    setFocusProxy(field_);
    field_->setFixedWidth(fieldWidth);
    problem_->setWordWrap(true);
    auto* column = layOutColumn(this, Theme::Space::label);
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::Space::related);
    row->addWidget(field_);
    row->addWidget(makeTextLabel(scale_.unit, Theme::Text::body, Theme::primaryText, this));
    row->addStretch(1);
    column->addLayout(row);
    column->addWidget(problem_);
    connect(field_, &QLineEdit::textEdited, this, [this, onNumber = std::move(onNumber)] {
        showProblem();
        if (const auto typed = number()) {
            onNumber(*typed);
        }
        Q_EMIT edited();
    });
    problem_->hide();
}

std::optional<double> NumberField::number() const {
    QString text = field_->text().trimmed();
    text.replace(u',', u'.');
    text.replace(QChar(0x2212), u'-');
    const auto number = TarvaneKit::decimalNumber(text.toStdString());
    return number && *number >= scale_.lowest && *number <= scale_.highest ? number : std::nullopt;
}

void NumberField::showNumber(double number) {
    const bool isToBeMended = field_->isModified() && !this->number();
    if (!isToBeMended && this->number() != number) {
        field_->setText(QString::number(number));
    }
    showProblem();
}

void NumberField::showProblem() {
    const bool isProblem = !number();
    problem_->setVisible(isProblem);
    field_->setAccessibleDescription(isProblem ? scale_.problem : scale_.unit);
}

}  // namespace TarvaneApp
