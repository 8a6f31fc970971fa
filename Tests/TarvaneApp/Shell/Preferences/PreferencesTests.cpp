#include <gtest/gtest.h>

#include <QComboBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>

#include "Shell/Preferences/PreferencesWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneApp {
namespace PreferencesTests {

class PreferencesTests : public TarvaneTests::EngineFixture {
  protected:
    PreferencesTests() {
        window = std::make_unique<PreferencesWindow>(
            PreferencesWindow::Environment{.engine = *engine,
                                           .profiles = profiles.store,
                                           .store = store,
                                           .openChannelWindow = [](const auto&) {}});
        window->show();
        settle();
    }
    ~PreferencesTests() override { window.reset(); }

    QStringList entries(const QComboBox& combo) {
        QStringList texts;
        for (int i = 0; i < combo.count(); ++i) {
            texts.append(combo.itemText(i));
        }
        return texts;
    }
    void pick(QComboBox& combo, const char* text) {
        const int index = combo.findText(QLatin1String(text));
        ASSERT_GE(index, 0);
        combo.setCurrentIndex(index);
        Q_EMIT combo.activated(index);
    }
    QPushButton* button(const char* text) {
        for (QPushButton* button : window->findChildren<QPushButton*>()) {
            if (button->text() == QLatin1String(text)) {
                return button;
            }
        }
        return nullptr;
    }

    TarvaneTests::TestProfiles profiles{store, clock};
    std::unique_ptr<PreferencesWindow> window;
};

TEST_F(PreferencesTests, theLeqFormWritesTheSettingsAndApplyStartsOver) {
    window->findChild<QTabWidget*>()->setCurrentIndex(2);
    QList<QComboBox*> pickers;
    for (QComboBox* combo : window->findChildren<QComboBox*>()) {
        if (combo->isVisible()) {
            pickers.append(combo);
        }
    }
    ASSERT_EQ(pickers.size(), 2);
    EXPECT_EQ(entries(*pickers[0]), (QStringList{"A", "C", "Z"}));
    EXPECT_EQ(entries(*pickers[1]),
              (QStringList{"1 sec", "10 sec", "1 min", "15 min", "1 hour", "8 hours", "24 hours"}));
    EXPECT_EQ(pickers[1]->currentText(), QStringLiteral("1 min"));
    pick(*pickers[0], "C");
    pick(*pickers[1], "10 sec");
    EXPECT_EQ(engine->leqWeighting(), TarvaneKit::Weighting::c);
    EXPECT_EQ(engine->leqIntegrationSeconds(), 10.0);

    engine->metricMode.set(MetricMode::leq);
    start();
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 48000)});
    button("Apply")->click();
    audio.feed("", {TarvaneTests::sine(1000.0, 0.1, 24000)});
    tick();
    // Half a second since Apply, of ten.
    EXPECT_NEAR(engine->meterChannel(TarvaneKit::UUID::main()).live.leqElapsedFraction, 0.05, 1e-9);
}

TEST_F(PreferencesTests, aStoredLeqTimeThatNoPresetHasIsShown) {
    window->findChild<QTabWidget*>()->setCurrentIndex(2);
    engine->leqIntegrationSeconds.set(42.0);
    bool found = false;
    for (const QComboBox* combo : window->findChildren<QComboBox*>()) {
        found = found || combo->currentText() == QStringLiteral("42 sec");
    }
    EXPECT_TRUE(found);
}

}  // namespace PreferencesTests
}  // namespace TarvaneApp
