// The way from "Export Level History…" to a file: which channels, which format, where; then the
// report, and a note in the window from which it can be opened. Metering goes on meanwhile: the
// pages are taken from the session on the main thread, and a thread of their own makes the files of
// them.
#pragma once

#include <QObject>
#include <QPointer>
#include <optional>
#include <string>

#include "Core/SerialQueue.h"
#include "Engine/MainThreadQueue.h"

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
    /// Waits until what the user has asked for is written.
    ~LevelHistoryExport() override;

    /// Asks, or says that there is nothing to export. A dialog that is open comes to the front.
    void begin();

  private:
    void write(const QString& path, const ExportOptions& options);
    void written(const QString& path, const std::optional<std::string>& error);

    MeterEngine& engine_;
    KeyValueStore& store_;
    NoteBar& note_;
    QWidget* window_;
    QPointer<QFileDialog> panel_;
    MainThreadQueue mainThread_;
    TarvaneKit::SerialQueue files_{"export"};  // ends ahead of the way back
};

}  // namespace TarvaneApp
