// A column of sections. It looks at its values when it comes on screen and when it is told to, and
// costs nothing while it is out of sight.
#pragma once

#include <QWidget>
#include <vector>

class QVBoxLayout;

namespace TarvaneApp {

class FormSection;

class Form : public QWidget {
    Q_OBJECT
  public:
    explicit Form(QWidget* parent = nullptr);

    FormSection& addSection(const QString& title);
    /// Something else between the sections: a note, a group that folds.
    void addWidget(QWidget* widget);

  public Q_SLOTS:
    /// Every row looks at its value again.
    void refresh();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QVBoxLayout* column_;
    std::vector<FormSection*> sections_;
};

}  // namespace TarvaneApp
