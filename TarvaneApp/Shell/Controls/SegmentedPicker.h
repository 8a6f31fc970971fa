// A row of joined segments, one of them selected. Arrow keys move within it.
#pragma once

#include <QButtonGroup>
#include <QStringList>
#include <QWidget>
#include <functional>

namespace TarvaneApp {

class SegmentedPicker final : public QWidget {
    Q_OBJECT
  public:
    /// `onPick(index)` runs when the user picks a segment that isn't the selected one.
    SegmentedPicker(const QStringList& labels, int width, std::function<void(int)> onPick,
                    QWidget* parent = nullptr);

    void setSelectedIndex(int index);
    int selectedIndex() const { return group_.checkedId(); }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QButtonGroup group_;
};

}  // namespace TarvaneApp
