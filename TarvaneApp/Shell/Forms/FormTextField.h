// A line of text in a form.
#pragma once

#include <QLineEdit>
#include <functional>

namespace TarvaneApp {

class FormTextField final : public QLineEdit {
    Q_OBJECT
  public:
    /// When a text counts: once the user is done with it, or with every letter.
    enum class Counts { whenDone, asTyped };

    /// `onText` runs with what the user typed. Leaving the field, by whatever way, is being done
    /// with it; Escape takes back what was not yet counted.
    FormTextField(Counts counts, std::function<void(const QString&)> onText,
                  QWidget* parent = nullptr);

    /// What is being typed and not yet counted isn't overwritten.
    void showText(const QString& text);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void hideEvent(QHideEvent* event) override;

  private:
    void finish();

    std::function<void(const QString&)> onText_;
    const Counts counts_;
    QString shown_;  ///< what the field shows unless the user is typing
};

}  // namespace TarvaneApp
