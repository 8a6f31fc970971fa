#include "Shell/Controls/BareLayout.h"

#include <QBoxLayout>

namespace TarvaneApp {

namespace {

template <class Layout>
Layout* layOut(QWidget* holder, int spacing) {
    auto* layout = new Layout(holder);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(spacing);
    return layout;
}

}  // namespace

QHBoxLayout* layOutRow(QWidget* holder, int spacing) {
    return layOut<QHBoxLayout>(holder, spacing);
}

QVBoxLayout* layOutColumn(QWidget* holder, int spacing) {
    return layOut<QVBoxLayout>(holder, spacing);
}

}  // namespace TarvaneApp
