// The colours and sizes of the windows that are read.
#pragma once

#include <QColor>

namespace TarvaneApp::HelpLook {

/// Of the text around bold words, which are in Theme::primaryText.
inline const QColor bodyText = QColor::fromRgbF(0.73F, 0.75F, 0.79F);

/// In logical pixels.
inline constexpr double bodySize = 13.0;
inline constexpr double headingSize = 14.0;
inline constexpr double titleSize = 24.0;
inline constexpr double pageButtonSize = 12.0;
inline constexpr double badgeSize = 9.0;

}  // namespace TarvaneApp::HelpLook
