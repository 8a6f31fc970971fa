// A compact button that shows its current choice and opens a menu of all of them.
#pragma once

#include <QColor>
#include <QToolButton>
#include <functional>
#include <optional>
#include <vector>

class QActionGroup;

namespace TarvaneApp {

class MenuButton : public QToolButton {
    Q_OBJECT
  public:
    /// `name` is what a screen reader calls the choice.
    explicit MenuButton(const QString& name, QWidget* parent = nullptr);
    /// Another name, where a window has several of its kind.
    void setName(const QString& name);

    struct Item {
        QString text;
        bool isCurrent = false;
        std::function<void()> action;
        /// A filled circle ahead of the text.
        std::optional<QColor> dot = std::nullopt;
        /// What the button shows while the item is current, if not its text.
        std::optional<QString> label = std::nullopt;
    };
    /// The button shows the current item.
    void setItems(std::vector<Item> items);

    /// The text may be cut short where the row has too little width.
    void letShrink();

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void tellName();

    QString name_;
    std::optional<QColor> dot_;
    QActionGroup* group_ = nullptr;
};

}  // namespace TarvaneApp
