// A part of a form that folds up under its header. What it holds is made when it is first unfolded,
// so that a group that stays folded costs its header alone.
#pragma once

#include <QWidget>
#include <functional>

class QAbstractButton;
class QHBoxLayout;

namespace TarvaneApp {

class FoldingGroup : public QWidget {
    Q_OBJECT
  public:
    using MakeContent = std::function<QWidget*(QWidget* parent)>;

    /// Folded.
    explicit FoldingGroup(MakeContent makeContent, QWidget* parent = nullptr);

    bool isExpanded() const { return isExpanded_; }
    void setExpanded(bool isExpanded);
    /// Null until it was unfolded once.
    QWidget* content() const { return content_; }
    /// What a click folds and unfolds.
    QAbstractButton& header() { return *header_; }

  Q_SIGNALS:
    /// The user has folded it, or unfolded it.
    void folded(bool isExpanded);

  protected:
    /// Behind the symbol that tells whether it is folded.
    QHBoxLayout& headerRow() { return *headerRow_; }
    /// What a screen reader says the header is of.
    void setTitle(const QString& title);

  private:
    MakeContent makeContent_;
    QAbstractButton* header_;
    QHBoxLayout* headerRow_;
    QWidget* content_ = nullptr;
    bool isExpanded_ = false;
};

}  // namespace TarvaneApp
