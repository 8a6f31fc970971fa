// A line across the window that says what has just happened, with what can be done about it, or
// what is under way. It stays until it is dismissed or something else has happened.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

class QHBoxLayout;

namespace TarvaneApp {

class ElidedLabel;
class Spinner;

class NoteBar final : public QWidget {
    Q_OBJECT
  public:
    explicit NoteBar(QWidget* parent = nullptr);

    struct Button {
        QString text;
        std::function<void()> press;
    };
    /// Takes the place of the note before.
    void say(const QString& text, const std::vector<Button>& buttons);
    /// The same of what is under way, for as long as nothing else is said.
    void sayAtWork(const QString& text);

  private:
    QHBoxLayout* row_;
    Spinner* spinner_;
    ElidedLabel* text_;
    std::vector<QWidget*> buttons_;
};

}  // namespace TarvaneApp
