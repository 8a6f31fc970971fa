// One element of a topic on the page.
#pragma once

#include <QWidget>

#include "Shell/Help/HelpBlock.h"

namespace TarvaneApp {

class HelpBlockView final : public QWidget {
    Q_OBJECT
  public:
    explicit HelpBlockView(const HelpBlock& block, QWidget* parent = nullptr);
};

}  // namespace TarvaneApp
