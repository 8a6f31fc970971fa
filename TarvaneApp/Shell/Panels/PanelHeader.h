// The row above a graph: what the panel is, and its controls. Where it is too narrow for all, those
// that can be missed leave it.
#pragma once

#include <QHBoxLayout>
#include <QWidget>
#include <vector>

namespace TarvaneApp {

class PanelHeader final : public QWidget {
    Q_OBJECT
  public:
    explicit PanelHeader(const QString& title, QWidget* parent = nullptr);

    /// Controls join here, behind the title.
    QHBoxLayout& row() { return *row_; }

    /// These leave the row where it has no room for all, the first one first and the title last.
    /// Nothing else shows or hides them.
    void setExpendable(std::vector<QWidget*> widgets);

    /// Tab goes through the row from left to right, then to `content`. Once all controls stand.
    void orderTabs(QWidget& content);

    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    int widthOf(const QWidget& widget) const;
    void fit();

    QHBoxLayout* row_;
    std::vector<QWidget*> expendable_;
};

}  // namespace TarvaneApp
