// The row above a graph: what the panel is, and its controls.
#pragma once

#include <QHBoxLayout>
#include <QWidget>

namespace TarvaneApp {

class PanelHeader final : public QWidget {
    Q_OBJECT
  public:
    explicit PanelHeader(const QString& title, QWidget* parent = nullptr);

    /// Controls join here, behind the title.
    QHBoxLayout& row() { return *row_; }

  private:
    QHBoxLayout* row_;
};

}  // namespace TarvaneApp
