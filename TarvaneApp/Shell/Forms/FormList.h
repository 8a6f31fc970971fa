// Items of one kind under each other, as many as there are: a row of a form that the user makes
// longer and shorter.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

class QVBoxLayout;

namespace TarvaneApp {

class FormList final : public QWidget {
    Q_OBJECT
  public:
    /// An item's widget, and what puts the values of now into it.
    struct Item {
        QWidget* widget;
        std::function<void()> show;
    };
    /// Makes the item of a place, which shows at each refresh what stands at that place then.
    using MakeItem = std::function<Item(int place, QWidget* parent)>;

    explicit FormList(MakeItem makeItem, QWidget* parent = nullptr);

    /// Items beyond `count` go, and so does no other: what has the focus keeps it as long as it
    /// has a place.
    void showItems(int count);

  private:
    void addItem();

    MakeItem makeItem_;
    QVBoxLayout* column_;
    std::vector<Item> items_;
};

}  // namespace TarvaneApp
