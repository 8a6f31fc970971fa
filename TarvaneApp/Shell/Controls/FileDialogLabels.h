// The toolkit's own dialog for files, where the desktop has none, has labels beside its two lists
// that name nothing to a screen reader.
#pragma once

class QFileDialog;

namespace TarvaneApp {

/// Once the dialog is made.
void labelLists(QFileDialog& dialog);

}  // namespace TarvaneApp
