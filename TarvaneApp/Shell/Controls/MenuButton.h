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

    struct Item {
        QString text;
        bool isCurrent = false;
        std::function<void()> action;
        /// A filled circle ahead of the text.
        std::optional<QColor> dot = std::nullopt;
        /// What the button shows while the item is current, if not its text.
        std::optional<QString> label = std::nullopt;
    };
    /// The button shows the current item. It may get narrower than that, and then elides.
    void setItems(std::vector<Item> items);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int widthAbout(int textWidth) const;

    QString name_;
    std::optional<QColor> dot_;
    QActionGroup* group_ = nullptr;
};

}  // namespace TarvaneApp
