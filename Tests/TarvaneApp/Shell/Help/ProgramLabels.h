// All that a user can read on the controls of windows, and their menus.
#pragma once

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QSet>
#include <QTabWidget>

namespace TarvaneTests {

class ProgramLabels {
  public:
    /// The labels of a window and of all in it, shown or hidden, and of the menus that open there.
    void read(QWidget& window) {
        add(window.windowTitle());
        // Some menus are filled as they open, and make their submenus anew.
        const auto there = window.findChildren<QMenu*>();
        for (const QPointer<QMenu>& menu : QList<QPointer<QMenu>>(there.begin(), there.end())) {
            if (menu) {
                Q_EMIT menu->aboutToShow();
            }
        }
        for (const QAction* action : window.findChildren<QAction*>()) {
            add(action->text());
        }
        for (const QWidget* widget : window.findChildren<QWidget*>()) {
            readWidget(*widget);
        }
    }

    /// Of the menus of a menu bar, each as "File > Quit", and of submenus as "A > B > C".
    void readMenus(const QMenuBar& bar) { readActions(bar.actions(), {}); }

    bool has(const QString& label) const { return labels_.contains(label); }

  private:
    void readActions(const QList<QAction*>& actions, const QString& path) {
        for (const QAction* action : actions) {
            const QString here = path + withoutMnemonic(action->text());
            add(here);
            if (action->menu() != nullptr) {
                readActions(action->menu()->actions(), here + " > ");
            }
        }
    }

    void readWidget(const QWidget& widget) {
        add(widget.accessibleName());
        add(widget.toolTip());
        if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
            add(button->text());
        } else if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
            add(label->text());
        } else if (const auto* group = qobject_cast<const QGroupBox*>(&widget)) {
            add(group->title());
        } else if (const auto* menu = qobject_cast<const QMenu*>(&widget)) {
            add(menu->title());
        } else if (const auto* combo = qobject_cast<const QComboBox*>(&widget)) {
            for (int i = 0; i < combo->count(); ++i) {
                add(combo->itemText(i));
            }
        } else if (const auto* tabs = qobject_cast<const QTabWidget*>(&widget)) {
            for (int i = 0; i < tabs->count(); ++i) {
                add(tabs->tabText(i));
                add(tabs->window()->windowTitle() + " > " + tabs->tabText(i));
            }
        }
    }

    static QString withoutMnemonic(QString text) {
        text.replace("&&", "\1");
        return text.remove(u'&').replace(u'\1', u'&');
    }
    void add(const QString& text) { labels_ << withoutMnemonic(text); }

    QSet<QString> labels_;
};

}  // namespace TarvaneTests
