#include "Shell/Forms/FormPicker.h"

#include <QSignalBlocker>
#include <QWheelEvent>

namespace TarvaneApp {

namespace {

constexpr int fewestCharacters = 12;

}  // namespace

FormPicker::FormPicker(std::function<void(int)> onPick, QWidget* parent) : DropDown(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(fewestCharacters);
    connect(this, &QComboBox::activated, this, std::move(onPick));
}

// An open list stays open: the entries are replaced only where they are others.
void FormPicker::showChoices(const QStringList& labels, int current) {
    QStringList shown;
    for (int i = 0; i < count(); ++i) {
        shown.append(itemText(i));
    }
    const QSignalBlocker quiet(this);
    if (shown != labels) {
        clear();
        addItems(labels);
    }
    setCurrentIndex(current);
}

void FormPicker::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

}  // namespace TarvaneApp
