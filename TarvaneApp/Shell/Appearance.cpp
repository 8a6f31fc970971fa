#include "Shell/Appearance.h"

#include <QApplication>
#include <QPalette>
#include <QToolTip>

#include "Displays/Contrast.h"
#include "Displays/Theme.h"
#include "Shell/Style/FlatStyle.h"

namespace TarvaneApp {

namespace {

// A picker's list fills its rows with the ground of a menu.
QPalette menuPalette(QPalette palette) {
    palette.setColor(QPalette::Window, Theme::controlBackground);
    palette.setColor(QPalette::Base, Theme::controlBackground);
    return palette;
}

QPalette darkPalette() {
    QPalette palette;
    palette.setColor(QPalette::Window, Theme::background);
    palette.setColor(QPalette::WindowText, Theme::primaryText);
    palette.setColor(QPalette::Base, Theme::panelBackground);
    palette.setColor(QPalette::AlternateBase, Theme::controlBackground);
    palette.setColor(QPalette::Text, Theme::primaryText);
    palette.setColor(QPalette::PlaceholderText, Theme::axisText);
    palette.setColor(QPalette::Button, Theme::gridLine);
    palette.setColor(QPalette::ButtonText, Theme::primaryText);
    palette.setColor(QPalette::BrightText, Qt::white);
    palette.setColor(QPalette::Highlight, Theme::accent);
    palette.setColor(QPalette::HighlightedText, Contrast::textOn(Theme::accent));
    palette.setColor(QPalette::Link, Theme::accent);
    palette.setColor(QPalette::ToolTipBase, Theme::gridLine);
    palette.setColor(QPalette::ToolTipText, Theme::primaryText);
    palette.setColor(QPalette::Light, Theme::gridLineStrong);
    palette.setColor(QPalette::Midlight, Theme::gridLineStrong);
    palette.setColor(QPalette::Mid, Theme::gridLine);
    palette.setColor(QPalette::Dark, Theme::background);
    palette.setColor(QPalette::Shadow, Qt::black);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
        palette.setColor(QPalette::Disabled, role, Theme::dimmed);
    }
    palette.setColor(QPalette::Disabled, QPalette::Highlight, Theme::gridLineStrong);
    return palette;
}

}  // namespace

void applyAppearance() {
    QApplication::setStyle(new FlatStyle);
    QApplication::setPalette(darkPalette());
    QApplication::setPalette(menuPalette(darkPalette()), "QMenu");
    QToolTip::setPalette(darkPalette());
}

}  // namespace TarvaneApp
