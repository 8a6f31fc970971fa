#include "Shell/Forms/NumberField.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <vector>

namespace TarvaneApp {
namespace NumberFieldTests {

class NumberFieldTests : public testing::Test {
  protected:
    NumberFieldTests() { field.show(); }

    QLineEdit& line() { return *field.findChild<QLineEdit*>(); }
    void type(const char* text) {
        line().selectAll();
        line().del();
        QTest::keyClicks(&line(), QString::fromUtf8(text));
    }
    bool tellsProblem() {
        for (const QLabel* label : field.findChildren<QLabel*>()) {
            if (label->text() == QStringLiteral("Between 0 and 200.")) {
                return label->isVisible();
            }
        }
        return false;
    }

    std::vector<double> taken;
    NumberField field{{.lowest = 0.0,
                       .highest = 200.0,
                       .unit = QStringLiteral("dB"),
                       .problem = QStringLiteral("Between 0 and 200.")},
                      [this](double number) { taken.push_back(number); }};
};

TEST_F(NumberFieldTests, takesWhatIsANumberWithAPointOrAComma) {
    for (const auto& [text, number] :
         {std::pair("94.3", 94.3), std::pair("114,5", 114.5), std::pair(" 0 ", 0.0)}) {
        type(text);
        EXPECT_EQ(field.number(), number) << text;
        EXPECT_EQ(taken.back(), number) << text;
        EXPECT_FALSE(tellsProblem()) << text;
    }
}

TEST_F(NumberFieldTests, whatCannotBeTakenStaysAndIsToldBesideIt) {
    field.showNumber(94.0);
    for (const char* text : {"", "abc", "-1", "200.1", "1e999", "nan"}) {
        type("5");
        taken.clear();
        type(text);
        EXPECT_FALSE(field.number()) << text;
        EXPECT_TRUE(tellsProblem()) << text;
        field.showNumber(94.0);
        EXPECT_EQ(line().text(), QString::fromLatin1(text));
        EXPECT_EQ(line().accessibleDescription(), QStringLiteral("Between 0 and 200."));
    }
    type("94");
    EXPECT_FALSE(tellsProblem());
    EXPECT_EQ(line().accessibleDescription(), QStringLiteral("dB"));
}

TEST_F(NumberFieldTests, aNumberFromElsewhereIsShownUnlessItIsTheSame) {
    field.showNumber(94.0);
    EXPECT_EQ(line().text(), QStringLiteral("94"));
    type("94.00");
    field.showNumber(94.0);
    EXPECT_EQ(line().text(), QStringLiteral("94.00"));
    field.showNumber(113.9);
    EXPECT_EQ(line().text(), QStringLiteral("113.9"));
}

}  // namespace NumberFieldTests
}  // namespace TarvaneApp
