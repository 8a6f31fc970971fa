#include "Shell/Controls/DropDown.h"

#include <QAbstractItemView>
#include <QKeyEvent>

namespace TarvaneApp {

void DropDown::showPopup() {
    view()->setAccessibleName(accessibleName());
    view()->installEventFilter(this);
    QComboBox::showPopup();
}

// The toolkit closes the list at the announcement of the key; the key itself would then close the
// popover that the list lies over.
bool DropDown::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::Cancel)) {
        event->accept();
        return true;
    }
    return QComboBox::eventFilter(watched, event);
}

}  // namespace TarvaneApp
