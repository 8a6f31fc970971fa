// The settings window: one tab per form.
#pragma once

#include <QWidget>

class QTabWidget;

namespace TarvaneApp {

class MeterEngine;

class PreferencesWindow final : public QWidget {
    Q_OBJECT
  public:
    explicit PreferencesWindow(MeterEngine& engine);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void addTab(const QString& title, const QString& symbol, QWidget* form);

    QTabWidget* tabs_;
};

}  // namespace TarvaneApp
