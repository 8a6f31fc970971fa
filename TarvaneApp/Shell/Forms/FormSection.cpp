#include "Shell/Forms/FormSection.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/WrappedLabel.h"
#include "Shell/Forms/ColorWell.h"
#include "Shell/Forms/FormPicker.h"
#include "Shell/Forms/ValueSlider.h"

namespace TarvaneApp {

using TarvaneKit::RGBAColor;

namespace {

constexpr int paddingUpDown = 14;

// A label's "&" is one, and no key.
QString withoutMnemonic(QString text) {
    return text.replace(u'&', QStringLiteral("&&"));
}

}  // namespace

FormSection::FormSection(const QString& title, QWidget* parent)
    : QGroupBox(withoutMnemonic(title), parent), rows_(new QFormLayout(this)) {
    rows_->setContentsMargins(Theme::Space::panel, paddingUpDown, Theme::Space::panel,
                              paddingUpDown);
    rows_->setHorizontalSpacing(0);
    rows_->setVerticalSpacing(Theme::Space::row);
    rows_->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    rows_->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

FormSection::~FormSection() = default;

void FormSection::refresh() {
    const bool isShown = !isShown_ || isShown_();
    setVisible(isShown);
    if (isShown) {
        for (const auto& row : all_) {
            row->refresh();
        }
    }
}

FormRow& FormSection::keep(QWidget* control, std::function<void()> show) {
    const FormRow* before = all_.empty() ? nullptr : all_.back().get();
    all_.push_back(std::make_unique<FormRow>(*rows_, *control, before, std::move(show)));
    return *all_.back();
}

FormRow& FormSection::addRow(const QString& label, QWidget* control, std::function<void()> show) {
    rows_->addRow(withoutMnemonic(label), control);
    // Without any label the controls begin where the section does.
    if (!label.isEmpty()) {
        rows_->setHorizontalSpacing(Theme::Space::panel);
    }
    QWidget* spoken = control->focusProxy() != nullptr ? control->focusProxy() : control;
    // A text is its own name: with another one a screen reader wouldn't read it.
    if (!label.isEmpty() && spoken->accessibleName().isEmpty() &&
        qobject_cast<QLabel*>(spoken) == nullptr) {
        spoken->setAccessibleName(label);
    }
    return keep(control, std::move(show));
}

FormRow& FormSection::addToggle(const QString& label, FormValue<bool> value) {
    auto* box = new QCheckBox(withoutMnemonic(label), this);
    connect(box, &QCheckBox::toggled, this, settingAndShowing(std::move(value.set)));
    return addRow({}, box, [box, get = std::move(value.get)] {
        const QSignalBlocker quiet(box);
        box->setChecked(get());
    });
}

FormRow& FormSection::addPickerRow(const QString& label, std::function<void(int)> pick,
                                   std::function<std::pair<QStringList, int>()> labelsAndCurrent) {
    auto* picker = new FormPicker(settingAndShowing(std::move(pick)), this);
    return addRow(label, picker, [picker, labelsAndCurrent = std::move(labelsAndCurrent)] {
        const auto [labels, current] = labelsAndCurrent();
        picker->showChoices(labels, current);
    });
}

FormRow& FormSection::addSlider(const QString& label, NumberScale scale, FormValue<double> value) {
    auto* slider = new ValueSlider(std::move(scale), settingAndShowing(std::move(value.set)), this);
    return addRow(label, slider, [slider, get = std::move(value.get)] { slider->setValue(get()); });
}

FormRow& FormSection::addSlider(const QString& label, std::function<NumberScale()> scale,
                                FormValue<double> value) {
    auto* slider = new ValueSlider(scale(), settingAndShowing(std::move(value.set)), this);
    return addRow(label, slider, [slider, scale = std::move(scale), get = std::move(value.get)] {
        slider->setScale(scale());
        slider->setValue(get());
    });
}

FormRow& FormSection::addStepper(const QString& label, const ValueStepper::Scale& scale,
                                 FormValue<double> value) {
    auto* stepper = new ValueStepper(scale, settingAndShowing(std::move(value.set)), this);
    return addRow(label, stepper,
                  [stepper, get = std::move(value.get)] { stepper->showValue(get()); });
}

FormRow& FormSection::addColor(const QString& label, FormValue<RGBAColor> value) {
    auto* well = new ColorWell(label, settingAndShowing(std::move(value.set)), this);
    return addRow(label, well, [well, get = std::move(value.get)] { well->setColor(get()); });
}

FormRow& FormSection::addTextField(const QString& label, FormValue<QString> value,
                                   FormTextField::Counts counts) {
    auto* field = new FormTextField(counts, settingAndShowing(std::move(value.set)), this);
    return addRow(label, field, [field, get = std::move(value.get)] { field->showText(get()); });
}

FormRow& FormSection::addReading(const QString& label, std::function<QString()> text) {
    auto* reading = new WrappedLabel(Theme::Text::body, Theme::primaryText, this);
    reading->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return addRow(label, reading, [reading, text = std::move(text)] { reading->setText(text()); });
}

FormRow& FormSection::addButton(const QString& text, std::function<void()> press) {
    return addButtons({makeFormButton(text, std::move(press), this)});
}

FormRow& FormSection::addButtons(const std::vector<QPushButton*>& buttons,
                                 std::function<void()> show) {
    auto* holder = new QWidget(this);
    auto* row = layOutRow(holder, Theme::Space::row);
    for (QPushButton* button : buttons) {
        row->addWidget(button);
    }
    row->addStretch(1);
    return addRow({}, holder, std::move(show));
}

FormRow& FormSection::addHelp(const QString& text) {
    return addHelp([text] { return text; });
}

FormRow& FormSection::addHelp(std::function<QString()> text) {
    auto* help = new WrappedLabel(Theme::Text::caption, Theme::axisText, this);
    return addRow({}, help, [help, text = std::move(text)] { help->setText(text()); });
}

FormRow& FormSection::addList(std::function<int()> count, FormList::MakeItem makeItem) {
    auto* list = new FormList(std::move(makeItem), this);
    return addControl({}, list, [list, count = std::move(count)] { list->showItems(count()); });
}

FormRow& FormSection::addControl(const QString& label, QWidget* control,
                                 std::function<void()> show) {
    if (label.isEmpty()) {
        rows_->addRow(control);
        return keep(control, std::move(show));
    }
    return addRow(label, control, std::move(show));
}

QPushButton* makeFormButton(const QString& text, std::function<void()> press, QWidget* parent) {
    auto* button = new QPushButton(withoutMnemonic(text), parent);
    button->setAutoDefault(false);
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QObject::connect(button, &QPushButton::clicked, parent, std::move(press));
    return button;
}

}  // namespace TarvaneApp
