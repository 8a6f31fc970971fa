// The process's one connection to the audio server: its thread loop, context and core, the graph
// it sees, and the way back after the server's death.
//
// Everything of PipeWire's happens under the thread loop's lock: in its callbacks on the loop's
// own thread, or in other threads that hold a `LoopLock`. Inside a callback nothing is torn down:
// it takes note and calls `wake`, and the work is done from the loop's own event, where no
// PipeWire function is on the stack. What other threads ask most, the device list, is kept as a
// copy under a mutex of its own, so that a listing never waits for the loop.
#pragma once

#include <pipewire/pipewire.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/AudioSystem.h"
#include "AudioIO/PipeWire/AudioGraph.h"

namespace TarvaneKit {

class PipeWireConnection {
  public:
    /// Something that lives on the connection. Called under the loop's lock from the loop's own
    /// event or timer, never from inside a callback of PipeWire's objects.
    class Client {
      public:
        virtual ~Client() = default;
        /// The server is gone; whatever was made on the core must go before this returns.
        virtual void serverLost() = 0;
        /// After each `wake` and each change of the graph.
        virtual void update() = 0;
        /// A few times a second.
        virtual void heartbeat() = 0;
    };

    /// No server is no error: the connection comes about when the server appears.
    PipeWireConnection();
    ~PipeWireConnection();
    PipeWireConnection(const PipeWireConnection&) = delete;
    PipeWireConnection& operator=(const PipeWireConnection&) = delete;

    // Any thread. In the first half second of the connection's life an answer may wait for the
    // server's own; never after.

    /// Throws AudioIOError (deviceEnumerationFailed) without a server.
    std::vector<AudioInputDevice> inputDevices();
    std::optional<std::uint32_t> defaultInputDeviceID();
    std::optional<TransportType> transportType(std::uint32_t deviceID);
    /// Empty for a device that isn't there.
    InputControls controls(std::uint32_t deviceID);
    /// False when the device isn't there or doesn't take it.
    bool setControls(std::uint32_t deviceID, const InputControls& controls);

    /// A listener to one device's controls, called from the loop's thread.
    struct ControlsListener {
        std::uint32_t deviceID = 0;
        std::function<void()> handler;
    };
    void addListener(ControlsListener& listener);
    /// When it has returned, the listener isn't running and won't be called again.
    void removeListener(ControlsListener& listener);

    /// Called from the loop's thread when the device list or the default input has changed.
    void setChangedHandler(std::function<void()> handler);

    // Under the loop's lock.

    pw_thread_loop* loop() const { return loop_; }
    /// Null while there is no server.
    pw_core* core() const { return core_; }
    /// Null while there is no server.
    const AudioGraph* graph() const { return graph_.get(); }
    void addClient(Client& client);
    void removeClient(Client& client);
    /// Tries at once rather than at the next heartbeat.
    void connectNow();
    /// Lets go of the lock until `wake`, a change of the graph, or the time's end.
    void waitUntil(std::chrono::steady_clock::time_point end);

    /// Any thread, the real-time one included: one write to an eventfd.
    void wake() noexcept;

  private:
    struct Snapshot {
        bool isComplete = false;
        int status = 0;
        std::vector<AudioInputDevice> devices;
        std::optional<std::uint32_t> defaultInputID;
        std::map<std::uint32_t, TransportType> transports;

        bool isSettled() const { return isComplete || status < 0; }
        bool operator==(const Snapshot&) const = default;
    };
    using ControlsByDevice = std::map<std::uint32_t, InputControls>;

    static void onCoreDone(void* data, std::uint32_t id, int sequence);
    static void onCoreError(void* data, std::uint32_t id, int sequence, int result,
                            const char* message);
    static void onWake(void* data, std::uint64_t count);
    static void onHeartbeat(void* data, std::uint64_t count);

    void connect();
    void disconnect();
    void publish();
    Snapshot takeSnapshot() const;
    Snapshot settledSnapshot();
    ControlsByDevice readControls() const;
    void publishControls();
    void forEachClient(void (Client::*call)());

    pw_thread_loop* loop_ = nullptr;
    pw_context* context_ = nullptr;
    spa_source* wakeEvent_ = nullptr;
    spa_source* heartbeatTimer_ = nullptr;

    // Under the loop's lock.
    pw_core* core_ = nullptr;
    spa_hook coreHook_ = {};
    std::unique_ptr<AudioGraph> graph_;
    std::chrono::steady_clock::time_point connectedAt_;
    bool serverGone_ = false;
    int status_ = 0;
    std::vector<Client*> clients_;
    std::vector<ControlsListener*> listeners_;

    const std::chrono::steady_clock::time_point madeAt_;
    std::mutex snapshotMutex_;
    std::condition_variable snapshotChanged_;
    Snapshot snapshot_;
    ControlsByDevice controls_;
    std::function<void()> changedHandler_;
};

/// Holds the thread loop's lock. It may be taken again by the thread that has it.
class LoopLock {
  public:
    explicit LoopLock(PipeWireConnection& connection) : loop_(connection.loop()) {
        pw_thread_loop_lock(loop_);
    }
    ~LoopLock() { pw_thread_loop_unlock(loop_); }
    LoopLock(const LoopLock&) = delete;
    LoopLock& operator=(const LoopLock&) = delete;

  private:
    pw_thread_loop* const loop_;
};

}  // namespace TarvaneKit
