// Whether a popover is open: a small window of controls under the button that opens and closes it.
// Its content is made when it opens and goes when it closes, by the button, by Escape or by a click
// anywhere else. Owned by the panel that the controls belong to; main thread.
#pragma once

#include <QObject>
#include <QPointer>
#include <functional>

class QAbstractButton;
class QWidget;

namespace TarvaneApp {

class PopoverPresentationState final : public QObject {
    Q_OBJECT
  public:
    /// Makes the controls, as a child of the popover.
    using Content = std::function<QWidget*(QWidget* popover)>;

    PopoverPresentationState(QAbstractButton& button, Content makeContent);

    bool isPresented() const;
    void setPresented(bool presented);

  private:
    QAbstractButton& button_;
    const Content makeContent_;
    QPointer<QWidget> popover_;
};

}  // namespace TarvaneApp
