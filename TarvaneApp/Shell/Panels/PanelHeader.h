// The row above a graph: what the panel is, and its controls. Where it is too narrow for all,
// the expendable ones are hidden.
#pragma once

#include <QHBoxLayout>
#include <QWidget>
#include <vector>

namespace TarvaneApp {

class PanelHeader final : public QWidget {
    Q_OBJECT
  public:
    explicit PanelHeader(const QString& title, QWidget* parent = nullptr);

    /// Where controls are added, after the title.
    QHBoxLayout& row() { return *row_; }

    /// Icon buttons, and what stands in for one, at the right end: plate by plate, and the last
    /// one's symbol ends where the graph does.
    void addIcons(const std::vector<QWidget*>& buttons);

    /// These are hidden where there is no room for all, the first one first and the title last.
    /// Only the header shows and hides them.
    void setExpendable(std::vector<QWidget*> widgets);

    /// Tab goes through the row from left to right, then to `content`. Call it once all controls
    /// are in the row.
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
