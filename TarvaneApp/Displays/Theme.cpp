#include "Displays/Theme.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cmath>

namespace TarvaneApp {

namespace {

// Rounded faces that distributions package, the most legible in numbers first.
constexpr std::array roundedFamilies{"Nunito", "Quicksand", "Dosis", "Comfortaa"};

QFont font(const QString& family, double size, QFont::Weight weight) {
    QFont font(family);
    font.setPixelSize(std::max(static_cast<int>(std::floor(size)), 1));
    font.setWeight(weight);
    return font;
}

Typeface findInstalled() {
    const QString system = QGuiApplication::font().family();
    const QStringList families = QFontDatabase::families();
    const auto rounded = std::ranges::find_if(roundedFamilies, [&](const char* family) {
        return families.contains(QLatin1String(family));
    });
    return {.system = system,
            .rounded = rounded != roundedFamilies.end() ? QString::fromLatin1(*rounded) : system,
            .monospaced = QFontDatabase::systemFont(QFontDatabase::FixedFont).family()};
}

}  // namespace

const Typeface& Typeface::installed() {
    static const Typeface typeface = findInstalled();
    return typeface;
}

QFont Typeface::systemFont(double size, QFont::Weight weight) const {
    return font(system, size, weight);
}

QFont Typeface::roundedFont(double size, QFont::Weight weight) const {
    QFont result = font(rounded, size, weight);
    // Unhinted, so that a number keeps its proportions at every size.
    result.setHintingPreference(QFont::PreferNoHinting);
    return result;
}

QFont Typeface::monospacedFont(double size, QFont::Weight weight) const {
    QFont result = font(monospaced, size, weight);
    result.setStyleHint(QFont::Monospace);
    return result;
}

QFont Theme::sectionLabelFont(const Typeface& typeface) {
    return typeface.systemFont(Text::caption, QFont::DemiBold);
}

QFont Theme::readoutFont(const Typeface& typeface) {
    return typeface.roundedFont(Text::readout, QFont::Bold);
}

QColor Theme::color(const TarvaneKit::RGBAColor& color) {
    const auto component = [](double value) {
        return static_cast<float>(std::isfinite(value) ? std::clamp(value, 0.0, 1.0) : 0.0);
    };
    return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                            component(color.alpha));
}

QColor Theme::faded(const QColor& color, double opacity) {
    QColor result = color;
    result.setAlphaF(color.alphaF() * static_cast<float>(opacity));
    return result;
}

}  // namespace TarvaneApp
