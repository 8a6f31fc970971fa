// A window that paints one colour 60 times a second: what a picture alone costs on this machine,
// beside the program's.
//
//     TarvaneBlankWindow WIDTH HEIGHT

#include <QApplication>
#include <QPainter>
#include <QTimer>
#include <QWidget>

namespace {

class BlankWindow final : public QWidget {
  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), QColor(10, 11, isOdd_ ? 15 : 16));
        isOdd_ = !isOdd_;
    }

  private:
    bool isOdd_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 3) {
        qCritical("usage: TarvaneBlankWindow WIDTH HEIGHT");
        return 1;
    }
    BlankWindow window;
    window.setAttribute(Qt::WA_OpaquePaintEvent);
    window.resize(arguments[1].toInt(), arguments[2].toInt());
    window.show();
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, &window, [&window] { window.update(); });
    timer.start(1000 / 60);
    return QApplication::exec();
}
