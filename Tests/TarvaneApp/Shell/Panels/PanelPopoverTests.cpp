// The headers of the two graphs: their overlays, and the controls under their buttons.

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QMenu>
#include <QShortcut>
#include <QSlider>
#include <QTest>

#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/ChannelControls/RTAOptionsView.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/RTAOverlayMenu.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SpectrogramControls.h"
#include "Shell/Panels/SpectrogramPanelView.h"
#include "TarvaneApp/Engine/EngineFixture.h"

namespace TarvaneApp {
namespace PanelPopoverTests {

class PanelPopoverTests : public TarvaneTests::EngineFixture {
  protected:
    static IconButton& slidersButton(QWidget& panel) {
        for (auto* button : panel.findChildren<IconButton*>()) {
            if (button->symbol() == QStringLiteral("slider.horizontal.3")) {
                return *button;
            }
        }
        throw std::logic_error("no such button");
    }
    void open(QWidget& panel, const QSize& size) {
        panel.resize(size);
        panel.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&panel));
        settle();
    }
};

TEST_F(PanelPopoverTests, theOptionsAreThoseOfTheAnalyzersChannel) {
    const auto stage = addChannel("Stage", "desk", 2);
    engine->rtaChannelID.set(stage.id);
    RTAPanelView panel(*engine, std::nullopt, nullptr);
    open(panel, {1000, 300});
    auto& button = slidersButton(panel);
    EXPECT_EQ(button.toolTip(),
              QStringLiteral("RTA options for this channel: color, view, band resolution, peak "
                             "hold, target curve, ring-out alerts"));
    EXPECT_EQ(button.accessibleName(), QStringLiteral("RTA options"));
    button.click();
    QWidget* popover = QApplication::activePopupWidget();
    ASSERT_NE(popover, nullptr);
    auto* options = popover->findChild<RTAOptionsView*>();
    ASSERT_NE(options, nullptr);
    EXPECT_EQ(popover->width(), 300);
    for (auto* menu : options->findChildren<MenuButton*>()) {
        if (menu->accessibleName().startsWith(QStringLiteral("Bands"))) {
            menu->menu()->actions()[0]->trigger();
        }
    }
    EXPECT_EQ(engine->display(stage.id).octaveFraction, TarvaneKit::OctaveFraction::oneOctave);
    EXPECT_EQ(engine->octaveFraction(), TarvaneKit::OctaveFraction::thirdOctave);
    QTest::keyClick(popover, Qt::Key_Escape);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(PanelPopoverTests, inAPopoverSpaceSwitchesAndDoesntStartMetering) {
    QWidget window;
    QShortcut start(QKeySequence(Qt::Key_Space), &window);
    QObject::connect(&start, &QShortcut::activated, &window, [this] { engine->start(); });
    auto* panel = new RTAPanelView(*engine, std::nullopt, nullptr, &window);
    panel->resize(1000, 300);
    open(window, {1000, 300});
    slidersButton(*panel).click();
    auto* box = QApplication::activePopupWidget()->findChild<QCheckBox*>();
    ASSERT_EQ(box->text(), QStringLiteral("Peak hold"));
    box->setFocus();
    QTest::keyClick(box, Qt::Key_Space);
    EXPECT_FALSE(engine->showPeakHold());
    EXPECT_FALSE(engine->isStarting());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
}

TEST_F(PanelPopoverTests, theAnalyzersOverlaysLeaveOutItsOwnChannel) {
    const auto stage = addChannel("Stage", "desk", 2);
    RTAPanelView panel(*engine, std::nullopt, nullptr);
    open(panel, {1000, 300});
    auto& menu = *panel.findChild<RTAOverlayMenu*>();
    const auto items = [&] {
        Q_EMIT menu.menu().aboutToShow();
        return menu.menu().actions();
    };
    items()[0]->trigger();
    const auto& view = panel.findChild<LiveSpectrumView*>()->view();
    ASSERT_EQ(view.overlays.size(), 1U);
    EXPECT_EQ(view.overlays[0].id, stage.id);
    engine->rtaChannelID.set(stage.id);
    EXPECT_TRUE(view.overlays.empty()) << "its own channel is on the list";
    EXPECT_EQ(items()[0]->text(), QStringLiteral("Main Input"));
}

TEST_F(PanelPopoverTests, aFixedChannelHasOverlaysAndOptionsButNoPicker) {
    const auto stage = addChannel("Stage", "desk", 2);
    RTAPanelView panel(*engine, stage.id, nullptr);
    open(panel, {1000, 300});
    EXPECT_EQ(panel.findChild<ChannelPickerMenu*>(), nullptr);
    EXPECT_TRUE(panel.findChild<RTAOverlayMenu*>()->isVisible());
    EXPECT_TRUE(slidersButton(panel).isVisible());
}

// As narrow as a window of the analyzer gets, with the most that its header can show.
TEST_F(PanelPopoverTests, theAnalyzersHeaderFitsItsSmallestWindow) {
    addChannel("Front of House Left", "desk", 2);
    RTAPanelView panel(*engine, std::nullopt, nullptr);
    open(panel, {480, 260});
    auto& options = slidersButton(panel);
    EXPECT_EQ(options.width(), options.sizeHint().width());
    EXPECT_LE(options.mapTo(&panel, QPoint(options.width(), 0)).x(), 480);
    for (auto* menu : panel.findChildren<MenuButton*>()) {
        EXPECT_GE(menu->width(), menu->minimumWidth());
    }
    const auto averaging = [&]() -> QLabel* {
        for (auto* label : panel.findChildren<QLabel*>()) {
            if (label->text() == QStringLiteral("Averaging")) {
                return label;
            }
        }
        return nullptr;
    }();
    ASSERT_NE(averaging, nullptr);
    EXPECT_FALSE(averaging->isVisible());
    panel.resize(900, 260);
    settle();
    EXPECT_TRUE(averaging->isVisible());
}

TEST_F(PanelPopoverTests, tabGoesFromLeftToRightAndThenToTheGraph) {
    addChannel("Stage", "desk", 2);
    RTAPanelView rta(*engine, std::nullopt, nullptr);
    LevelHistoryPanelView history(*engine, std::nullopt);
    SpectrogramPanelView spectrogram(*engine, std::nullopt, nullptr);
    for (QWidget* panel : std::initializer_list<QWidget*>{&rta, &history, &spectrogram}) {
        open(*panel, {1200, 260});
        panel->activateWindow();
        waitUntil([&] { return panel->isActiveWindow(); });
        panel->findChild<MenuButton*>()->setFocus();
        int stops = 0;
        QWidget* last = nullptr;
        do {
            last = panel->focusWidget();
            QTest::keyClick(last, Qt::Key_Tab);
            ++stops;
        } while (panel->focusWidget()->mapTo(panel, QPoint()).x() >
                 last->mapTo(panel, QPoint()).x());
        EXPECT_GE(stops, 3);
        EXPECT_NE(dynamic_cast<SpokenDisplay*>(panel->focusWidget()), nullptr)
            << panel->metaObject()->className() << ": it jumped to "
            << panel->focusWidget()->accessibleName().toStdString();
    }
}

TEST_F(PanelPopoverTests, aNarrowSpectrogramOpensItsSlidersUnderTheButton) {
    SpectrogramPanelView panel(*engine, std::nullopt, nullptr);
    open(panel, {480, 260});
    auto& button = slidersButton(panel);
    ASSERT_TRUE(button.isVisible());
    EXPECT_EQ(button.toolTip(), QStringLiteral("Adjust Floor, Ceiling, Speed, Slice Height"));
    button.click();
    QWidget* popover = QApplication::activePopupWidget();
    ASSERT_NE(popover, nullptr);
    auto* controls = popover->findChild<SpectrogramControls*>();
    ASSERT_NE(controls, nullptr);
    controls->findChildren<QSlider*>()[0]->setValue(-95);
    EXPECT_DOUBLE_EQ(engine->spectrogramRanges().dbfs.floorDB, -95.0);
    button.click();
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

}  // namespace PanelPopoverTests
}  // namespace TarvaneApp
