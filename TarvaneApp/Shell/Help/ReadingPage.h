// A column of text in a window, scrolled by wheel and keys, no wider than lines stay readable.
#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace TarvaneApp {

class ReadingPage final : public QScrollArea {
    Q_OBJECT
  public:
    explicit ReadingPage(QWidget* parent = nullptr);

    /// What is read, from top to bottom.
    QVBoxLayout& column() { return *column_; }

  protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QVBoxLayout* column_;
    bool isReachedByKey_ = false;
};

}  // namespace TarvaneApp
