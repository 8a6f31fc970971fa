#include "Shell/UnansweredLaunch.h"

#include <QMessageBox>
#include <QPushButton>

namespace TarvaneApp {

bool askWhetherToStartAnyway() {
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Tarvane"),
                    QStringLiteral("Tarvane is already running but doesn't answer."));
    const auto* start = box.addButton(QStringLiteral("Start Anyway"), QMessageBox::AcceptRole);
    QPushButton* quit = box.addButton(QStringLiteral("Quit"), QMessageBox::RejectRole);
    box.setDefaultButton(quit);
    box.setEscapeButton(quit);
    box.exec();
    return box.clickedButton() == start;
}

}  // namespace TarvaneApp
