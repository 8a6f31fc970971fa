// A number that is typed, with a sentence under it while it can't be taken: what was typed stays to
// be mended.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

class QLabel;
class QLineEdit;

namespace TarvaneApp {

class NumberField final : public QWidget {
    Q_OBJECT
  public:
    struct Scale {
        double lowest;
        double highest;
        QString unit;
        QString problem;  ///< the sentence for what is no number, or none between the two
    };

    /// `onNumber` runs with every number that the user has typed.
    NumberField(Scale scale, std::function<void(double)> onNumber, QWidget* parent = nullptr);

    /// Neither the same number in other digits nor what can't be taken is overwritten.
    void showNumber(double number);
    /// Absent while what stands there can't be taken. A comma is a decimal point too.
    std::optional<double> number() const;

  Q_SIGNALS:
    /// The user has typed something.
    void edited();

  private:
    void showProblem();

    const Scale scale_;
    QLineEdit* field_;
    QLabel* problem_;
};

}  // namespace TarvaneApp
