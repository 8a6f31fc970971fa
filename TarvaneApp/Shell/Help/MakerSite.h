// The address of the maker's site as a link in a line of text.
#pragma once

#include <QString>

class QLabel;
class QWidget;

namespace TarvaneApp {

/// The link stands behind `text`, and shows the address without its scheme. It opens in the
/// desktop's browser.
QLabel* makeMakerSiteLabel(const QString& text, const QString& address, QWidget* parent);

}  // namespace TarvaneApp
