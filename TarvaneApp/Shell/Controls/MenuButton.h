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
    /// Less room around the text, for a row that is short of it.
    void setTight(bool isTight);

    /// That of the button when it isn't tight.
    int ordinaryWidth() const;
    /// How wide a button that may shrink should be where there is so much room for it.
    int widthIn(int room) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void tellName();
    int padding() const;
    int widthWith(int textWidth) const;

    QString name_;
    std::optional<QColor> dot_;
    bool mayShrink_ = false;
    bool isTight_ = false;
    QActionGroup* group_ = nullptr;
};

}  // namespace TarvaneApp
