// How high the meter of a window is, where the user has moved its handle: kept beside the window's
// frame, since it belongs to this machine's screen as that does. The view owns it; main thread.
#pragma once

#include <QObject>
#include <string>

class QWidget;

namespace TarvaneApp {

class KeyValueStore;
class ModuleLayoutView;

class MeterHeightMemory final : public QObject {
    Q_OBJECT
  public:
    /// The height of the modules in `window` is stored under `name`. A window without a handle
    /// needs no memory, and gets none.
    static void keep(KeyValueStore& store, const std::string& name, QWidget& window);

  private:
    MeterHeightMemory(KeyValueStore& store, const std::string& name, ModuleLayoutView& modules);
    void save();

    KeyValueStore& store_;
    const std::string key_;
    ModuleLayoutView& modules_;
};

}  // namespace TarvaneApp
