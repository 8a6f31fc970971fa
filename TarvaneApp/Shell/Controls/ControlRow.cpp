#include "Shell/Controls/ControlRow.h"

#include <QHBoxLayout>
#include <QWidget>

namespace TarvaneApp {

QHBoxLayout* ControlRow::make(QWidget* holder, int spacing) {
    auto* row = new QHBoxLayout(holder);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(spacing);
    return row;
}

}  // namespace TarvaneApp
