// A source's open time: from `start` to `stop` it keeps a stream on the right node, holds the
// sample rate it started with, and reports once when no more audio will come. An input stays the
// device that it was at the start, the default input too; the default output is followed. Both
// sources of this platform are thin wrappers around it.
//
// `start` and `stop` are called on threads of the owner's choice. State belongs to the loop's
// lock; what happens while running happens on the loop's thread. The block handler runs on the
// session's capture thread.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/AudioInputSource.h"
#include "AudioIO/PipeWire/CaptureStatistics.h"
#include "AudioIO/PipeWire/CaptureStream.h"
#include "AudioIO/PipeWire/PipeWireConnection.h"

namespace TarvaneKit {

/// Why a session didn't start.
struct CaptureFailure {
    enum class Reason { noServer, noDefault, deviceGone, noChannels, other };

    Reason reason = Reason::other;
    int status = 0;    ///< negative errno
    std::string text;  ///< a finished sentence, for `other`
};

class CaptureSession final : PipeWireConnection::Client, CaptureStream::Owner {
  public:
    enum class Target { device, defaultInput, defaultOutput };

    /// How the stream presents itself to mixers and session managers.
    struct Identity {
        std::string nodeName;
        std::string description;
        std::string mediaName;
        std::string threadName;
    };

    CaptureSession(std::shared_ptr<PipeWireConnection> connection, Identity identity);
    ~CaptureSession() override;

    /// What happens while it is open.
    struct Handlers {
        CaptureThread::Handler onBlock;                ///< on the capture thread
        CaptureThread::LostHandler onLost;             ///< on the capture thread
        std::function<void(AudioSourceLoss)> onEnded;  ///< on any thread, once
    };

    /// Opens and waits until audio has arrived, five seconds at most. `device` counts for
    /// Target::device alone. Throws CaptureFailure; nothing is open then. A session that is open
    /// is closed first.
    void start(Target target, const std::optional<AudioInputDevice>& device, Handlers handlers);
    /// When it has returned, no handler is running and none will run. A start under way in another
    /// thread ends with a failure, at once and whatever it waits for. Waits for handlers alone,
    /// never for the server.
    void stop();

    /// Hz; 48000 before the first start.
    double sampleRate() const;
    /// What the last start that succeeded opened; absent before, and for a sink.
    std::optional<AudioInputDevice> device() const;
    CaptureStatistics statistics() const { return counters_.read(); }

  private:
    enum class State { idle, opening, running, lost };
    using Clock = std::chrono::steady_clock;

    // PipeWireConnection::Client
    void serverLost() override;
    void update() override;
    void heartbeat() override;
    // CaptureStream::Owner
    bool acceptFormat(int rate, int channelCount) override;
    void streamChanged() override;

    void waitForAudio(Clock::time_point end);
    bool openingStep(Clock::time_point now);
    const AudioNode* wantedNode() const;
    const AudioNode* openedNode() const;
    void open(const AudioNode& node, int rate);
    bool isLinkedTo(std::uint32_t nodeID) const;
    bool isLinkedElsewhere(std::uint32_t nodeID) const;
    void keepRunning(bool mayRetry);
    void lose(AudioSourceLoss loss);
    void close();
    CaptureFailure failureOfStream() const;
    CaptureFailure absence() const;

    const std::shared_ptr<PipeWireConnection> connection_;
    const Identity identity_;
    std::mutex startMutex_;  // one start at a time
    std::mutex closeMutex_;  // whoever closes waits for who is closing

    // Under the loop's lock.
    State state_ = State::idle;
    int stopsBefore_ = 0;  // of the start that is under way; one more ends it
    Target target_ = Target::defaultInput;
    std::optional<AudioInputDevice> device_;
    Handlers handlers_;
    std::unique_ptr<CaptureThread> thread_;
    CaptureThread::Layout layout_;
    std::unique_ptr<CaptureStream> stream_;
    std::uint32_t nodeID_ = SPA_ID_INVALID;  // what the stream captures from
    std::string nodeSerial_;
    std::optional<AudioInputDevice> opened_;
    Clock::time_point startedAt_;
    std::optional<Clock::time_point> firstRefusalAt_;
    std::int64_t blocksSeen_ = 0;
    Clock::time_point blocksSeenAt_;

    std::atomic<int> stops_ = 0;
    std::atomic<int> sampleRate_ = 0;
    std::atomic<bool> hasDelivered_ = false;
    CaptureCounters counters_;
};

}  // namespace TarvaneKit
