#include "Shell/Controls/FileDialogLabels.h"

#include <QComboBox>
#include <QFileDialog>
#include <QLabel>

namespace TarvaneApp {

void labelLists(QFileDialog& dialog) {
    for (const char* which : {"lookIn", "fileType"}) {
        const QString name = QString::fromLatin1(which);
        auto* label = dialog.findChild<QLabel*>(name + QStringLiteral("Label"));
        auto* list = dialog.findChild<QComboBox*>(name + QStringLiteral("Combo"));
        if (label != nullptr && list != nullptr) {
            label->setBuddy(list);
        }
    }
}

}  // namespace TarvaneApp
