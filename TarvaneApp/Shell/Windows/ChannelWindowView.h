// A channel in a window of its own: a header that says which one, over its own copy of the modules.
// It stays when the channel is removed, and says so. Closing deletes it.
#pragma once

#include <QMainWindow>
#include <optional>

#include "Core/UUID.h"

class QLabel;

namespace TarvaneApp {

class ChannelColorDot;
class ElidedLabel;
class MeterEngine;

class ChannelWindowView final : public QMainWindow {
    Q_OBJECT
  public:
    ChannelWindowView(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& channelID);

    const std::optional<TarvaneKit::UUID>& channelID() const { return channelID_; }

  Q_SIGNALS:
    void closed();

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    QWidget* makeContent(const TarvaneKit::UUID& channelID);
    QWidget* makeHeader(const TarvaneKit::UUID& channelID, QWidget* parent);
    void showChannel();

    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> channelID_;
    ChannelColorDot* dot_ = nullptr;
    ElidedLabel* name_ = nullptr;
    ElidedLabel* input_ = nullptr;
    ElidedLabel* status_ = nullptr;
    QWidget* content_ = nullptr;  // null without a channel
    QLabel* removedNote_;
};

}  // namespace TarvaneApp
