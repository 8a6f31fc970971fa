#include "Shell/Forms/FormRow.h"

#include <gtest/gtest.h>

#include <QFormLayout>
#include <QLabel>
#include <QWidget>
#include <array>
#include <vector>

#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {
namespace FormRowTests {

// A section of four rows, of which those that are switched on are there.
class FormRowTests : public testing::Test {
  protected:
    FormRowTests() : section(form.addSection(QStringLiteral("Section"))) {
        for (std::size_t i = 0; i < isOn.size(); ++i) {
            const QString name(QChar(u'A' + static_cast<char16_t>(i)));
            // The third has the whole width, the last a text that wraps.
            FormRow& row = i == 2 ? section.addControl({}, new QLabel(name, &section))
                           : i == 3
                               ? section.addHelp(name + QStringLiteral(" and more").repeated(100))
                               : section.addReading(name, [name] { return name; });
            row.shownWhile([this, i] { return isOn[i]; });
            controls.push_back(&row.control());
        }
        form.show();
    }

    // The rows that the layout has, by what each control says first.
    QString inLayout() {
        const auto& rows = *static_cast<QFormLayout*>(section.layout());
        QString found;
        for (int row = 0; row < rows.rowCount(); ++row) {
            for (const auto role : {QFormLayout::FieldRole, QFormLayout::SpanningRole}) {
                const auto* item = rows.itemAt(row, role);
                if (item != nullptr) {
                    found += static_cast<QLabel*>(item->widget())->text().front();
                    break;
                }
            }
        }
        return found;
    }

    std::array<bool, 4> isOn{true, true, true, true};
    Form form;
    FormSection& section;
    std::vector<QWidget*> controls;
};

TEST_F(FormRowTests, aRowThatIsNotThereTakesNoPlace) {
    EXPECT_EQ(inLayout(), QStringLiteral("ABCD"));
    const int whole = section.heightForWidth(400);
    isOn = {true, false, true, false};
    form.refresh();
    EXPECT_EQ(inLayout(), QStringLiteral("AC"));
    EXPECT_FALSE(controls[1]->isVisible());
    EXPECT_TRUE(controls[2]->isVisible());
    EXPECT_LT(section.heightForWidth(400), whole);
}

TEST_F(FormRowTests, rowsComeBackInTheirPlaces) {
    for (int set = 0; set < 16; ++set) {
        QString expected;
        for (std::size_t i = 0; i < isOn.size(); ++i) {
            isOn[i] = (set >> i & 1) != 0;
            if (isOn[i]) {
                expected += QChar(u'A' + static_cast<char16_t>(i));
            }
        }
        form.refresh();
        EXPECT_EQ(inLayout(), expected);
        for (std::size_t i = 0; i < isOn.size(); ++i) {
            EXPECT_EQ(controls[i]->isVisible(), isOn[i]) << expected.toStdString();
        }
    }
}

TEST_F(FormRowTests, aLabelComesAndGoesWithItsRow) {
    const auto& rows = *static_cast<QFormLayout*>(section.layout());
    auto* label = rows.labelForField(controls[1]);
    ASSERT_NE(label, nullptr);
    isOn[1] = false;
    form.refresh();
    EXPECT_FALSE(label->isVisible());
    isOn[1] = true;
    form.refresh();
    EXPECT_TRUE(label->isVisible());
    EXPECT_EQ(rows.labelForField(controls[1]), label);
}

}  // namespace FormRowTests
}  // namespace TarvaneApp
