// "What's New in Tarvane": what each version brought, newest first. WindowScenes opens it; main
// thread.
#pragma once

#include <QWidget>

class QVBoxLayout;

namespace TarvaneApp {

struct ReleaseNote;

class ReleaseNotesWindowView final : public QWidget {
    Q_OBJECT
  public:
    ReleaseNotesWindowView();

  private:
    void addNote(QVBoxLayout& column, const ReleaseNote& note, bool isNewest);
};

}  // namespace TarvaneApp
