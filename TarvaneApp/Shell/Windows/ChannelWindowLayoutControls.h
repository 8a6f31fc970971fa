// The controls of a channel window's layout: which modules it shows, and how they are arranged
// where that differs from the main window.
#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "Core/UUID.h"
#include "Records/ChannelWindowLayout.h"

class QFormLayout;
class QVBoxLayout;

namespace TarvaneApp {

class MeterEngine;

class ChannelWindowLayoutControls final : public QWidget {
    Q_OBJECT
  public:
    ChannelWindowLayoutControls(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                                QWidget* parent = nullptr);

  private:
    void addToggle(QVBoxLayout& column, const QString& name, bool ChannelWindowLayout::*shows);
    template <class E>
    void addPicker(QFormLayout& rows, const QString& name,
                   std::optional<E> ChannelWindowLayout::*field);
    void showLayout();

    MeterEngine& engine_;
    const TarvaneKit::UUID channelID_;
    /// Each shows the layout in one control.
    std::vector<std::function<void(const ChannelWindowLayout&)>> shows_;
};

}  // namespace TarvaneApp
