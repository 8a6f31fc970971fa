// The way from "Export Level History…" to a file: which channels, which format, where; then the
// report, and a note in the window from which it can be opened. Metering goes on meanwhile.
#pragma once

#include <QObject>
#include <QPointer>
#include <string>

class QFileDialog;
class QWidget;

namespace TarvaneApp {

class ExportOptions;
class KeyValueStore;
class MeterEngine;
class NoteBar;

class LevelHistoryExport final : public QObject {
    Q_OBJECT
  public:
    /// All of it outlives this. `store` keeps the folder that was used last.
    struct Environment {
        MeterEngine& engine;
        KeyValueStore& store;
        NoteBar& note;
    };
    /// `window` owns it, and is under the dialog while the user is in none of the program's.
    LevelHistoryExport(const Environment& environment, QWidget* window);

    /// Asks, or says that there is nothing to export. A dialog that is open comes to the front.
    void begin();

  private:
    void write(const QString& path, const ExportOptions& options);

    MeterEngine& engine_;
    KeyValueStore& store_;
    NoteBar& note_;
    QWidget* window_;
    QPointer<QFileDialog> panel_;
};

}  // namespace TarvaneApp
