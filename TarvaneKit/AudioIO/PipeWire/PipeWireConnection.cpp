#include "AudioIO/PipeWire/PipeWireConnection.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include "AudioIO/AudioIOError.h"
#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

using namespace std::chrono_literals;

// How often an absent server is looked for, and how finely stalls are timed.
constexpr auto heartbeatPeriod = 250ms;
// The first listing takes 3 to 5 ms on a live server. So long after the connection was made nobody
// waits for it any more, so that a hung server doesn't hang who asks.
constexpr auto listingLimit = 500ms;
// Nobody may be there who chooses defaults.
constexpr auto defaultsLimit = 200ms;

// PipeWire's own diagnostics stay quiet unless their variable asks for them.
void initializeOnce() {
    static const bool done = [] {
        pw_init(nullptr, nullptr);
        if (std::getenv("PIPEWIRE_DEBUG") == nullptr) {
            pw_log_set_level(SPA_LOG_LEVEL_NONE);
        }
        return true;
    }();
    static_cast<void>(done);
}

pw_properties* contextProperties(const char* configuration) {
    pw_properties* properties = pw_properties_new(PW_KEY_APP_ID, "org.brenlow.tarvane",
                                                  PW_KEY_APP_NAME, "Tarvane", nullptr);
    if (configuration != nullptr) {
        pw_properties_set(properties, PW_KEY_CONFIG_NAME, configuration);
    }
    return properties;
}

// The real-time configuration gives the data thread its priority where the user may have it.
pw_context* makeContext(pw_loop* loop) {
    if (pw_context* context = pw_context_new(loop, contextProperties("client-rt.conf"), 0)) {
        return context;
    }
    return pw_context_new(loop, contextProperties(nullptr), 0);
}

timespec toTimespec(std::chrono::nanoseconds time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
    timespec result = {};
    result.tv_sec = static_cast<time_t>(seconds.count());
    result.tv_nsec = static_cast<long>((time - seconds).count());
    return result;
}

}  // namespace

PipeWireConnection::PipeWireConnection() : madeAt_(std::chrono::steady_clock::now()) {
    initializeOnce();
    loop_ = pw_thread_loop_new("tarvane-audio", nullptr);
    TARVANE_PRECONDITION(loop_ != nullptr);
    pw_loop* loop = pw_thread_loop_get_loop(loop_);
    context_ = makeContext(loop);
    status_ = context_ == nullptr ? -errno : -EHOSTDOWN;
    wakeEvent_ = pw_loop_add_event(loop, onWake, this);
    heartbeatTimer_ = pw_loop_add_timer(loop, onHeartbeat, this);
    timespec period = toTimespec(heartbeatPeriod);
    pw_loop_update_timer(loop, heartbeatTimer_, &period, &period, false);
    connect();
    pw_thread_loop_start(loop_);
}

PipeWireConnection::~PipeWireConnection() {
    pw_thread_loop_stop(loop_);
    TARVANE_PRECONDITION(clients_.empty());
    disconnect();
    pw_loop* loop = pw_thread_loop_get_loop(loop_);
    pw_loop_destroy_source(loop, heartbeatTimer_);
    pw_loop_destroy_source(loop, wakeEvent_);
    if (context_ != nullptr) {
        pw_context_destroy(context_);
    }
    pw_thread_loop_destroy(loop_);
}

std::vector<AudioInputDevice> PipeWireConnection::inputDevices() {
    const Snapshot snapshot = settledSnapshot();
    if (snapshot.status < 0) {
        throw AudioIOError::deviceEnumerationFailed(snapshot.status);
    }
    if (!snapshot.isComplete) {
        throw AudioIOError::deviceEnumerationFailed(-ETIMEDOUT);
    }
    return snapshot.devices;
}

std::optional<std::uint32_t> PipeWireConnection::defaultInputDeviceID() {
    return settledSnapshot().defaultInputID;
}

std::optional<TransportType> PipeWireConnection::transportType(std::uint32_t deviceID) {
    const Snapshot snapshot = settledSnapshot();
    const auto found = snapshot.transports.find(deviceID);
    return found != snapshot.transports.end() ? std::optional(found->second) : std::nullopt;
}

InputControls PipeWireConnection::controls(std::uint32_t deviceID) {
    const std::scoped_lock lock(snapshotMutex_);
    const auto found = controls_.find(deviceID);
    return found != controls_.end() ? found->second : InputControls{};
}

bool PipeWireConnection::setControls(std::uint32_t deviceID, const InputControls& controls) {
    const LoopLock lock(*this);
    return graph_ != nullptr && graph_->setControls(deviceID, controls);
}

void PipeWireConnection::addListener(ControlsListener& listener) {
    const LoopLock lock(*this);
    listeners_.push_back(&listener);
}

void PipeWireConnection::removeListener(ControlsListener& listener) {
    const LoopLock lock(*this);
    std::erase(listeners_, &listener);
}

void PipeWireConnection::setChangedHandler(std::function<void()> handler) {
    const LoopLock lock(*this);
    changedHandler_ = std::move(handler);
}

void PipeWireConnection::addClient(Client& client) {
    clients_.push_back(&client);
}

void PipeWireConnection::removeClient(Client& client) {
    std::erase(clients_, &client);
}

void PipeWireConnection::connectNow() {
    if (core_ == nullptr) {
        connect();
    }
}

void PipeWireConnection::waitUntil(std::chrono::steady_clock::time_point end) {
    const auto left =
        std::max<std::chrono::nanoseconds>(end - std::chrono::steady_clock::now(), 0ns);
    timespec time = {};
    pw_thread_loop_get_time(loop_, &time, left.count());
    pw_thread_loop_timed_wait_full(loop_, &time);
}

void PipeWireConnection::wake() noexcept {
    pw_loop_signal_event(pw_thread_loop_get_loop(loop_), wakeEvent_);
}

void PipeWireConnection::connect() {
    if (context_ == nullptr) {
        return;
    }
    core_ = pw_context_connect(context_, nullptr, 0);
    status_ = core_ == nullptr ? -errno : 0;
    if (core_ != nullptr) {
        static const pw_core_events events = [] {
            pw_core_events e = {};
            e.version = PW_VERSION_CORE_EVENTS;
            e.done = onCoreDone;
            e.error = onCoreError;
            return e;
        }();
        serverGone_ = false;
        connectedAt_ = std::chrono::steady_clock::now();
        pw_core_add_listener(core_, &coreHook_, &events, this);
        graph_ = std::make_unique<AudioGraph>(core_, [this] { wake(); });
    }
    publish();
}

void PipeWireConnection::disconnect() {
    if (core_ == nullptr) {
        return;
    }
    graph_.reset();
    spa_hook_remove(&coreHook_);
    pw_core_disconnect(std::exchange(core_, nullptr));
}

void PipeWireConnection::onCoreDone(void* data, std::uint32_t id, int sequence) {
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (id == PW_ID_CORE && self.graph_ != nullptr) {
        self.graph_->syncDone(sequence);
    }
}

// An error of the core itself comes also when one of its objects is gone (-ENOENT); only a broken
// pipe means that the server is.
void PipeWireConnection::onCoreError(void* data, std::uint32_t id, int, int result, const char*) {
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (id == PW_ID_CORE && result == -EPIPE) {
        self.serverGone_ = true;
        self.status_ = result;
        self.wake();
    }
}

void PipeWireConnection::onWake(void* data, std::uint64_t) {
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (std::exchange(self.serverGone_, false)) {
        self.forEachClient(&Client::serverLost);
        self.disconnect();
    }
    self.publish();
    self.forEachClient(&Client::update);
    pw_thread_loop_signal(self.loop_, false);
}

void PipeWireConnection::onHeartbeat(void* data, std::uint64_t) {
    auto& self = *static_cast<PipeWireConnection*>(data);
    if (self.core_ == nullptr) {
        self.connect();
    } else {
        self.publish();
    }
    self.forEachClient(&Client::heartbeat);
    pw_thread_loop_signal(self.loop_, false);
}

void PipeWireConnection::forEachClient(void (Client::*call)()) {
    for (Client* client : std::vector<Client*>(clients_)) {
        if (std::find(clients_.begin(), clients_.end(), client) != clients_.end()) {
            (client->*call)();
        }
    }
}

PipeWireConnection::Snapshot PipeWireConnection::takeSnapshot() const {
    Snapshot result;
    result.status = status_;
    if (graph_ == nullptr) {
        return result;
    }
    const bool defaultsAreDue = std::chrono::steady_clock::now() - connectedAt_ > defaultsLimit;
    result.isComplete = graph_->isListed() && (graph_->knowsDefaults() || defaultsAreDue);
    for (const AudioNode* node : graph_->nodes()) {
        if (node->isInput() && node->channelCount > 0) {
            result.devices.push_back(node->deviceRecord());
            result.transports[node->id] =
                node->isVirtual ? TransportType::virtualDevice : TransportType::hardware;
        }
    }
    if (const AudioNode* node = graph_->defaultSource()) {
        result.defaultInputID = node->id;
    }
    return result;
}

PipeWireConnection::ControlsByDevice PipeWireConnection::readControls() const {
    ControlsByDevice result;
    if (graph_ != nullptr) {
        for (const AudioNode* node : graph_->nodes()) {
            if (node->isInput()) {
                result.emplace(node->id, graph_->controls(*node));
            }
        }
    }
    return result;
}

void PipeWireConnection::publishControls() {
    const ControlsByDevice next = readControls();
    ControlsByDevice previous = next;
    {
        const std::scoped_lock lock(snapshotMutex_);
        controls_.swap(previous);
    }
    const auto isNews = [&](std::uint32_t deviceID) {
        const auto before = previous.find(deviceID);
        const auto now = next.find(deviceID);
        return (before == previous.end() ? InputControls{} : before->second) !=
               (now == next.end() ? InputControls{} : now->second);
    };
    for (const ControlsListener* listener : listeners_) {
        if (isNews(listener->deviceID)) {
            listener->handler();
        }
    }
}

// The controls come first: a listener that hears of a new device finds its gain. The copy stays as
// it is while a server that has just come up isn't listed yet.
void PipeWireConnection::publish() {
    publishControls();
    Snapshot next = takeSnapshot();
    if (!next.isSettled()) {
        return;
    }
    bool isNews = false;
    {
        const std::scoped_lock lock(snapshotMutex_);
        isNews = next != snapshot_;
        snapshot_ = std::move(next);
    }
    if (isNews) {
        snapshotChanged_.notify_all();
        if (changedHandler_) {
            changedHandler_();
        }
    }
}

// The copy, once the first listing is in it, or the news that there is no server.
PipeWireConnection::Snapshot PipeWireConnection::settledSnapshot() {
    std::unique_lock lock(snapshotMutex_);
    snapshotChanged_.wait_until(lock, madeAt_ + listingLimit,
                                [this] { return snapshot_.isSettled(); });
    return snapshot_;
}

}  // namespace TarvaneKit
