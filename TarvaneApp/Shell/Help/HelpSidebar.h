// The topics of the help beside the page: under the titles of their groups, or those that a search
// finds. What is selected in it is the topic that is shown.
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QListWidget;

namespace TarvaneApp {

class HelpNavigation;
struct HelpTopic;

class HelpSidebar final : public QWidget {
    Q_OBJECT
  public:
    explicit HelpSidebar(HelpNavigation& navigation, QWidget* parent = nullptr);

    /// Puts the focus into the search field.
    void search();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void showTopics();
    void addHeading(const QString& title);
    void addTopic(const HelpTopic& topic);
    void showSelection();
    void select();
    void enterList();

    HelpNavigation& navigation_;
    QLineEdit* search_;
    QListWidget* list_;
    QLabel* nothing_;
};

}  // namespace TarvaneApp
