#include "Shell/Forms/FormSection.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTest>

#include "DSP/Weighting.h"
#include "Shell/Forms/ColorWell.h"
#include "Shell/Forms/EnumChoices.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormPicker.h"
#include "Shell/Forms/ValueSlider.h"

namespace TarvaneApp {
namespace FormSectionTests {

using TarvaneKit::RGBAColor;

// A form of one section over values that count how often they are looked at and set.
class FormSectionTests : public testing::Test {
  protected:
    template <class T>
    struct Kept {
        T value{};
        int reads = 0;
        int writes = 0;

        FormValue<T> formValue() {
            return {.get =
                        [this] {
                            ++reads;
                            return value;
                        },
                    .set =
                        [this](T changed) {
                            ++writes;
                            value = std::move(changed);
                        }};
        }
    };

    FormSectionTests() : section(form.addSection(QStringLiteral("Section"))) {}

    template <class Widget>
    Widget& only() {
        const auto found = form.findChildren<Widget*>();
        if (found.size() != 1) {
            throw std::logic_error("not one, but " + std::to_string(found.size()));
        }
        return *found.front();
    }

    static NumberScale decibels(double lowest, double highest, double step = 1.0) {
        return {.lowest = lowest, .highest = highest, .step = step, .text = [](double value) {
                    return QString::number(value, 'f', 1) + QStringLiteral(" dB");
                }};
    }

    Form form;
    FormSection& section;
    Kept<double> number;
    Kept<bool> flag;
    Kept<QString> text;
    Kept<RGBAColor> color;
};

TEST_F(FormSectionTests, nothingIsLookedAtWhileTheFormIsOutOfSight) {
    section.addSlider("Level", decibels(0, 10), number.formValue());
    section.addToggle("On", flag.formValue());
    int conditions = 0;
    section.addHelp("Help").shownWhile([&] {
        ++conditions;
        return true;
    });
    form.refresh();
    EXPECT_EQ(number.reads + flag.reads + conditions, 0);
    form.show();
    EXPECT_EQ(number.reads, 1);
    EXPECT_EQ(flag.reads, 1);
    EXPECT_EQ(conditions, 1);
    form.refresh();
    EXPECT_EQ(number.reads, 2);
    form.hide();
    form.refresh();
    EXPECT_EQ(number.reads, 2);
    flag.value = true;
    form.show();
    EXPECT_TRUE(only<QCheckBox>().isChecked()) << "what changed meanwhile is there";
}

TEST_F(FormSectionTests, aRefreshWritesNothing) {
    Kept<double> stepped;
    Kept<TarvaneKit::Weighting> weighting;
    section.addSlider("Level", decibels(0, 10), number.formValue());
    section.addStepper("Target", {.lowest = 0, .highest = 10, .step = 0.5, .unit = "LU"},
                       stepped.formValue());
    section.addToggle("On", flag.formValue());
    section.addPicker("Weighting", enumChoices<TarvaneKit::Weighting>(), weighting.formValue());
    section.addTextField("Name", text.formValue());
    section.addColor("Color", color.formValue());
    form.show();
    // Another value on its way in, off the steps and beyond the scales.
    number.value = 3.3;
    stepped.value = 20.0;
    flag.value = true;
    weighting.value = TarvaneKit::Weighting::z;
    text.value = "changed";
    color.value = {1.0, 0.0, 0.0, 1.0};
    form.refresh();
    number.value = -5.0;
    form.refresh();
    form.hide();
    EXPECT_EQ(number.writes + stepped.writes + flag.writes + weighting.writes + text.writes +
                  color.writes,
              0);
    EXPECT_EQ(stepped.value, 20.0);
}

// --- sliders

TEST_F(FormSectionTests, aValueBeyondTheSlidersScaleStaysUntilItIsMoved) {
    number.value = 140.0;
    section.addSlider("Reference SPL", decibels(60, 130), number.formValue());
    form.show();
    auto& slider = only<QSlider>();
    EXPECT_EQ(slider.value(), slider.maximum());
    EXPECT_EQ(slider.accessibleDescription(), "140.0 dB") << "told as it is";
    form.refresh();
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(number.value, 140.0) << "the slider is at its end";
    EXPECT_EQ(number.writes, 0);
    QTest::keyClick(&slider, Qt::Key_Left);
    EXPECT_EQ(number.value, 129.0);
    EXPECT_EQ(slider.accessibleDescription(), "129.0 dB");
}

TEST_F(FormSectionTests, whatIsNotFiniteIsPassedOver) {
    number.value = 94.0;
    section.addSlider("Reference SPL", decibels(60, 130), number.formValue());
    form.show();
    for (const double strange :
         {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        number.value = strange;
        form.refresh();
        EXPECT_EQ(only<QSlider>().accessibleDescription(), "94.0 dB");
    }
    QTest::keyClick(&only<QSlider>(), Qt::Key_Right);
    EXPECT_EQ(number.value, 95.0);
}

TEST_F(FormSectionTests, aSliderCountsWholeStepsUpToTheEndOfItsScale) {
    section.addSlider("Level", decibels(-12, 0.5), number.formValue());
    form.show();
    auto& slider = only<QSlider>();
    QTest::keyClick(&slider, Qt::Key_Home);
    EXPECT_EQ(number.value, -12.0);
    EXPECT_EQ(slider.value(), -12) << "what a screen reader reads of it";
    QTest::keyClick(&slider, Qt::Key_Right);
    EXPECT_EQ(number.value, -11.0);
    QTest::keyClick(&slider, Qt::Key_End);
    EXPECT_EQ(number.value, 0.5) << "the scale ends between two steps";
}

TEST_F(FormSectionTests, aSlidersScaleMovesAndItsUnitWithIt) {
    double highest = 10.0;
    QString unit = " dB";
    section.addSlider(
        "Level",
        [&] {
            return NumberScale{
                .lowest = 0.0, .highest = highest, .step = 1.0, .text = [unit](double value) {
                    return QString::number(value) + unit;
                }};
        },
        number.formValue());
    number.value = 8.0;
    form.show();
    auto& slider = only<QSlider>();
    highest = 5.0;
    form.refresh();
    EXPECT_EQ(slider.value(), 5);
    EXPECT_EQ(slider.accessibleDescription(), "8 dB");
    EXPECT_EQ(number.writes, 0);
    highest = 20.0;
    unit = " dBFS";
    form.refresh();
    EXPECT_EQ(slider.value(), 8);
    EXPECT_EQ(slider.accessibleDescription(), "8 dBFS");
}

TEST_F(FormSectionTests, aSliderShowsWhatItsValueHasComeTo) {
    section.addSlider("Threshold", decibels(0, 10),
                      {.get = [&] { return number.value; },
                       .set = [&](double value) { number.value = std::min(value, 3.0); }});
    form.show();
    auto& slider = only<QSlider>();
    slider.setValue(7);
    EXPECT_EQ(slider.value(), 3);
    EXPECT_EQ(slider.accessibleDescription(), "3.0 dB");
}

TEST_F(FormSectionTests, theWheelScrollsTheFormAndTurnsNothing) {
    number.value = 5.0;
    Kept<double> stepped{.value = 5.0};
    Kept<TarvaneKit::Weighting> weighting;
    section.addSlider("Level", decibels(0, 10), number.formValue());
    section.addStepper("Target", {.lowest = 0, .highest = 10, .step = 0.5, .unit = "LU"},
                       stepped.formValue());
    section.addPicker("Weighting", enumChoices<TarvaneKit::Weighting>(), weighting.formValue());
    form.show();
    for (QWidget* control :
         {static_cast<QWidget*>(&only<QSlider>()), static_cast<QWidget*>(&only<ValueStepper>()),
          static_cast<QWidget*>(&only<FormPicker>())}) {
        control->setFocus();
        QWheelEvent wheel(QPointF(5, 5), QPointF(5, 5), {}, QPoint(0, -120), Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        wheel.accept();
        QCoreApplication::sendEvent(control, &wheel);
        EXPECT_FALSE(wheel.isAccepted()) << control->metaObject()->className();
    }
    EXPECT_EQ(number.writes + stepped.writes + weighting.writes, 0);
}

// --- steppers

TEST_F(FormSectionTests, aStepperStepsAndIsTyped) {
    number.value = -23.0;
    section.addStepper("Target", {.lowest = -40, .highest = -5, .step = 0.5, .unit = "LUFS"},
                       number.formValue());
    form.show();
    auto& stepper = only<ValueStepper>();
    EXPECT_EQ(stepper.text(), "-23 LUFS");
    stepper.stepUp();
    EXPECT_EQ(number.value, -22.5);
    EXPECT_EQ(stepper.text(), "-22.5 LUFS");
    for (const QString& typed :
         {QStringLiteral("-18.5"), QStringLiteral("-18,5"), QStringLiteral("−18.5")}) {
        number.value = -23.0;
        form.refresh();
        stepper.selectAll();
        // Letter by letter, also the minus that is no key of QTest's.
        for (const QChar letter : typed) {
            QKeyEvent press(QEvent::KeyPress, Qt::Key_unknown, Qt::NoModifier, QString(letter));
            QCoreApplication::sendEvent(&stepper, &press);
        }
        EXPECT_EQ(number.value, -23.0) << "not while it is being typed";
        QTest::keyClick(&stepper, Qt::Key_Return);
        EXPECT_EQ(number.value, -18.5) << typed.toStdString();
    }
}

TEST_F(FormSectionTests, aSteppersPrefixIsPrinted) {
    number.value = 1.0;
    section.addStepper(
        "Tolerance",
        {.lowest = 0.5, .highest = 5, .step = 0.5, .unit = "LU", .prefix = QStringLiteral("±")},
        number.formValue());
    form.show();
    EXPECT_EQ(only<ValueStepper>().text(), QStringLiteral("±1 LU"));
}

TEST_F(FormSectionTests, aValueBeyondASteppersScaleStaysUntilItIsStepped) {
    number.value = -60.0;
    section.addStepper("Target", {.lowest = -40, .highest = -5, .step = 0.5, .unit = "LUFS"},
                       number.formValue());
    form.show();
    auto& stepper = only<ValueStepper>();
    EXPECT_EQ(stepper.text(), "-40 LUFS");
    stepper.setFocus();
    QTest::keyClick(&stepper, Qt::Key_Return);
    EXPECT_EQ(number.writes, 0);
    stepper.stepUp();
    EXPECT_EQ(number.value, -39.5);
}

TEST_F(FormSectionTests, aRefreshLeavesANumberThatIsBeingTyped) {
    number.value = -23.0;
    section.addStepper("Target", {.lowest = -40, .highest = -5, .step = 0.5, .unit = "LUFS"},
                       number.formValue());
    form.show();
    auto& stepper = only<ValueStepper>();
    stepper.selectAll();
    QTest::keyClicks(&stepper, QStringLiteral("-1"));
    number.value = -30.0;
    form.refresh();
    QTest::keyClicks(&stepper, QStringLiteral("6"));
    QTest::keyClick(&stepper, Qt::Key_Return);
    EXPECT_EQ(number.value, -16.0);
    number.value = -30.0;
    form.refresh();
    EXPECT_EQ(stepper.value(), -30.0) << "once it is done it follows again";
    number.value = std::numeric_limits<double>::quiet_NaN();
    form.refresh();
    EXPECT_EQ(stepper.value(), -30.0);
}

// --- texts

TEST_F(FormSectionTests, aTextCountsWhenItIsDoneAndIsNotOverwrittenBefore) {
    text.value = "Stage";
    section.addTextField("Name", text.formValue());
    form.show();
    auto& field = only<FormTextField>();
    EXPECT_EQ(field.text(), "Stage");
    QTest::keyClicks(&field, QStringLiteral(" Left"));
    text.value = "changed";
    form.refresh();
    EXPECT_EQ(field.text(), "Stage Left");
    EXPECT_EQ(text.writes, 0);
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(text.value, "Stage Left");
    text.value = "Balcony";
    form.refresh();
    EXPECT_EQ(field.text(), "Balcony") << "with the focus still in it";
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(text.writes, 1);
}

TEST_F(FormSectionTests, aTextShowsWhatItHasComeTo) {
    section.addTextField("Name",
                         {.get = [&] { return text.value; },
                          .set = [&](const QString& typed) { text.value = typed.trimmed(); }});
    form.show();
    QTest::keyClicks(&only<FormTextField>(), QStringLiteral("  Stage "));
    QTest::keyClick(&only<FormTextField>(), Qt::Key_Return);
    EXPECT_EQ(only<FormTextField>().text(), "Stage");
}

TEST_F(FormSectionTests, escapeTakesBackWhatIsTypedAndClosingTheFormDoesNot) {
    text.value = "Stage";
    section.addTextField("Name", text.formValue());
    form.show();
    auto& field = only<FormTextField>();
    QTest::keyClicks(&field, QStringLiteral("X"));
    QTest::keyClick(&field, Qt::Key_Escape);
    EXPECT_EQ(field.text(), "Stage");
    QTest::keyClicks(&field, QStringLiteral(" Left"));
    form.hide();
    EXPECT_EQ(text.value, "Stage Left");
    EXPECT_EQ(text.writes, 1);
}

TEST_F(FormSectionTests, aTextThatCountsAsItIsTypedIsThereWithEveryLetter) {
    section.addTextField("Preset name", text.formValue(), FormTextField::Counts::asTyped);
    form.show();
    QTest::keyClicks(&only<FormTextField>(), QStringLiteral("ab"));
    EXPECT_EQ(text.value, "ab");
    EXPECT_EQ(text.writes, 2);
    QTest::keyClick(&only<FormTextField>(), Qt::Key_Return);
    EXPECT_EQ(text.writes, 2);
    text.value.clear();
    form.refresh();
    EXPECT_EQ(only<FormTextField>().text(), "");
}

// --- pickers

TEST_F(FormSectionTests, aPickersChoicesMayBeOthersEachTime) {
    std::vector<FormChoice<int>> choices{{"One", 1}, {"Two", 2}};
    Kept<int> picked{.value = 2};
    section.addPicker<int>(
        "Which", [&] { return choices; }, picked.formValue());
    form.show();
    auto& picker = only<FormPicker>();
    EXPECT_EQ(picker.currentText(), "Two");
    picked.value = 7;
    form.refresh();
    EXPECT_EQ(picker.currentIndex(), -1) << "none of them";
    choices = {{"Seven", 7}, {"Two", 2}};
    // An index counts in what the list shows, though there are other choices by now.
    Q_EMIT picker.activated(0);
    EXPECT_EQ(picked.value, 1);
    form.refresh();
    EXPECT_EQ(picker.itemText(0), "Seven");
    Q_EMIT picker.activated(0);
    EXPECT_EQ(picked.value, 7);
}

// --- conditions

TEST_F(FormSectionTests, rowsComeAndGoAndDimWithTheirLabels) {
    bool isShown = false;
    bool isEnabled = false;
    section.addSlider("Level", decibels(0, 10), number.formValue())
        .shownWhile([&] { return isShown; })
        .enabledWhile([&] { return isEnabled; });
    auto& slider = only<QSlider>();
    auto& rows = *static_cast<QFormLayout*>(section.layout());
    QWidget* label = rows.labelForField(&only<ValueSlider>());
    form.show();
    EXPECT_FALSE(slider.isVisible());
    EXPECT_FALSE(label->isVisible());
    EXPECT_EQ(number.reads, 0) << "nobody sees it";
    isShown = true;
    form.refresh();
    EXPECT_TRUE(slider.isVisible());
    EXPECT_TRUE(label->isVisible());
    EXPECT_FALSE(slider.isEnabled());
    EXPECT_FALSE(label->isEnabled());
    isEnabled = true;
    form.refresh();
    EXPECT_TRUE(slider.isEnabled());
    EXPECT_TRUE(label->isEnabled());
}

TEST_F(FormSectionTests, aSectionComesAndGoes) {
    bool isShown = false;
    section.addToggle("On", flag.formValue());
    section.shownWhile([&] { return isShown; });
    form.show();
    EXPECT_FALSE(section.isVisible());
    EXPECT_EQ(flag.reads, 0);
    isShown = true;
    form.refresh();
    EXPECT_TRUE(section.isVisible());
    EXPECT_EQ(flag.reads, 1);
}

// --- lists

TEST_F(FormSectionTests, aListGrowsAndShrinksAndKeepsTheFocus) {
    std::vector<QString> names{"a", "b", "c"};
    section.addList([&] { return static_cast<int>(names.size()); },
                    [&](int place, QWidget* parent) {
                        auto* button = makeFormButton(
                            {}, [&names, place] { names.erase(names.begin() + place); }, parent);
                        return FormList::Item{
                            button, [&names, button, place] {
                                button->setText(names[static_cast<std::size_t>(place)]);
                            }};
                    });
    form.show();
    const auto shown = [&] {
        QStringList texts;
        for (const auto* button : form.findChildren<QPushButton*>()) {
            if (button->isVisible()) {
                texts.append(button->text());
            }
        }
        return texts;
    };
    EXPECT_EQ(shown(), (QStringList{"a", "b", "c"}));
    QPushButton* first = form.findChildren<QPushButton*>().front();
    first->click();
    form.refresh();
    EXPECT_EQ(shown(), (QStringList{"b", "c"}));
    EXPECT_EQ(first->text(), "b") << "the item of a place stays, with what stands there now";
    names = {"x", "y", "z", "w"};
    form.refresh();
    EXPECT_EQ(shown(), (QStringList{"x", "y", "z", "w"}));
    names.clear();
    form.refresh();
    EXPECT_EQ(shown(), QStringList());
}

// --- names

TEST_F(FormSectionTests, anAmpersandIsALetter) {
    section.addToggle("input device & calibration", flag.formValue());
    section.addSlider("Rise & fall", decibels(0, 10), number.formValue());
    EXPECT_EQ(only<QCheckBox>().text(), "input device && calibration");
    EXPECT_TRUE(only<QCheckBox>().shortcut().isEmpty());
    EXPECT_EQ(only<QSlider>().accessibleName(), "Rise & fall");
}

TEST_F(FormSectionTests, aScreenReaderHasTheRowsLabel) {
    section.addSlider("Level", decibels(0, 10), number.formValue());
    section.addTextField("Name", text.formValue());
    section.addColor("Color", color.formValue());
    EXPECT_EQ(only<QSlider>().accessibleName(), "Level");
    EXPECT_EQ(only<FormTextField>().accessibleName(), "Name");
    EXPECT_EQ(only<ColorWell>().accessibleName(), "Color");
}

}  // namespace FormSectionTests
}  // namespace TarvaneApp
