#include "AudioIO/PipeWire/CaptureSession.h"

#include <algorithm>
#include <cerrno>
#include <utility>

#include "AudioIO/BlockContinuity.h"
#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

using namespace std::chrono_literals;

constexpr auto startLimit = 5s;
// Devices and defaults of a server that has just come up appear within this time.
constexpr auto appearanceLimit = 500ms;
constexpr auto stallLimit = 3s;
// A session manager that doesn't know a new device yet refuses to link to it. Streams are tried
// again for so long, so often.
constexpr auto retryLimit = 1s;
constexpr auto retryPeriod = 50ms;
// A session manager names another default within some milliseconds of the old one's end.
constexpr auto successionLimit = 1s;
// The A and C weighting filters are not stable at rates much below; the stream resamples then.
constexpr int lowestRate = 44100;
constexpr int rateForSlowGraphs = 48000;
constexpr double rateBeforeFirstStart = 48000.0;

}  // namespace

CaptureSession::CaptureSession(std::shared_ptr<PipeWireConnection> connection, Identity identity)
    : connection_(std::move(connection)), identity_(std::move(identity)) {
    const LoopLock lock(*connection_);
    connection_->addClient(*this);
}

CaptureSession::~CaptureSession() {
    stop();
    const LoopLock lock(*connection_);
    connection_->removeClient(*this);
}

void CaptureSession::start(Target target, const std::optional<AudioInputDevice>& device,
                           Handlers handlers) {
    const int stopsBefore = stops_.load();
    const std::scoped_lock starting(startMutex_);
    close();
    const auto end = Clock::now() + startLimit;
    try {
        const LoopLock lock(*connection_);
        target_ = target;
        device_ = device;
        handlers_ = std::move(handlers);
        counters_.reset();
        hasDelivered_ = false;
        stopsBefore_ = stopsBefore;
        sampleRate_ = 0;
        opened_.reset();
        startedAt_ = Clock::now();
        firstRefusalAt_.reset();
        state_ = State::opening;
        connection_->connectNow();
        waitForAudio(end);
        opened_ = target_ == Target::defaultOutput
                      ? std::nullopt
                      : std::optional(connection_->graph()->node(nodeID_)->deviceRecord());
        state_ = State::running;
        blocksSeen_ = counters_.blocks.load();
        blocksSeenAt_ = Clock::now();
    } catch (const CaptureFailure&) {
        close();
        throw;
    }
}

void CaptureSession::stop() {
    ++stops_;
    {
        const LoopLock lock(*connection_);
        pw_thread_loop_signal(connection_->loop(), false);
    }
    close();
}

double CaptureSession::sampleRate() const {
    const int rate = sampleRate_.load();
    return rate > 0 ? rate : rateBeforeFirstStart;
}

std::optional<AudioInputDevice> CaptureSession::device() const {
    const LoopLock lock(*connection_);
    return opened_;
}

// The stream goes first, so that nothing is pushed any more; the capture thread is waited for
// without the loop's lock, since its handler may take its time.
void CaptureSession::close() {
    const std::scoped_lock closing(closeMutex_);
    std::unique_ptr<CaptureThread> thread;
    {
        const LoopLock lock(*connection_);
        state_ = State::idle;
        stream_.reset();
        nodeID_ = SPA_ID_INVALID;
        thread = std::move(thread_);
    }
    if (thread != nullptr) {
        thread->stop();
    }
}

void CaptureSession::waitForAudio(Clock::time_point end) {
    for (;;) {
        if (stops_.load() != stopsBefore_) {
            throw CaptureFailure{CaptureFailure::Reason::other, -ECANCELED,
                                 "The start was cancelled."};
        }
        if (connection_->core() == nullptr) {
            throw CaptureFailure{CaptureFailure::Reason::noServer, -EHOSTDOWN,
                                 "There is no audio server."};
        }
        const auto now = Clock::now();
        if (openingStep(now)) {
            return;
        }
        if (now >= end) {
            throw CaptureFailure{CaptureFailure::Reason::other, -ETIMEDOUT,
                                 "The device delivered no audio within 5 seconds."};
        }
        connection_->waitUntil(std::min(end, now + retryPeriod));
    }
}

// True when audio of the right node is arriving.
bool CaptureSession::openingStep(Clock::time_point now) {
    const AudioGraph& graph = *connection_->graph();
    const AudioNode* node = wantedNode();
    if (node == nullptr || node->channelCount == 0) {
        stream_.reset();
        if (graph.isListed() && now - startedAt_ > appearanceLimit) {
            throw absence();
        }
        return false;
    }
    if (stream_ == nullptr || nodeSerial_ != node->serial) {
        if (target_ == Target::defaultInput) {
            target_ = Target::device;
            device_ = node->deviceRecord();
        }
        open(*node, 0);
    } else if (stream_->isRefused()) {
        open(*node, rateForSlowGraphs);
    }
    if (stream_->hasFailed() || stream_->isEnded()) {
        const CaptureFailure failure = failureOfStream();
        firstRefusalAt_ = firstRefusalAt_.value_or(now);
        if (now - *firstRefusalAt_ > retryLimit) {
            throw failure;
        }
        stream_.reset();
        return false;
    }
    if (isLinkedElsewhere(node->id)) {
        throw CaptureFailure{CaptureFailure::Reason::deviceGone, -ENODEV, {}};
    }
    return stream_->isStreaming() && hasDelivered_ && isLinkedTo(node->id);
}

CaptureFailure CaptureSession::failureOfStream() const {
    return {
        CaptureFailure::Reason::other, stream_->status() < 0 ? stream_->status() : -EIO,
        stream_->failure().empty() ? "The audio server closed the stream." : stream_->failure()};
}

CaptureFailure CaptureSession::absence() const {
    if (wantedNode() != nullptr) {
        return {CaptureFailure::Reason::noChannels, -ENODEV, {}};
    }
    return {target_ == Target::device ? CaptureFailure::Reason::deviceGone
                                      : CaptureFailure::Reason::noDefault,
            -ENODEV,
            {}};
}

// The node to capture from at present: the chosen device, found again by its uid when it was
// plugged in anew, or the default. A run stays with the device that it started on, so the default
// input is asked for only until a stream to it is opened.
const AudioNode* CaptureSession::wantedNode() const {
    const AudioGraph* graph = connection_->graph();
    if (graph == nullptr) {
        return nullptr;
    }
    if (target_ == Target::defaultInput) {
        return graph->defaultSource();
    }
    if (target_ == Target::defaultOutput) {
        return graph->defaultSink();
    }
    const auto matches = [this](const AudioNode& node) {
        return node.isInput() && node.uid == device_->uid;
    };
    const AudioNode* byID = graph->node(device_->id);
    if (byID != nullptr && matches(*byID)) {
        return byID;
    }
    const auto nodes = graph->nodes();
    const auto found = std::find_if(nodes.begin(), nodes.end(),
                                    [&](const AudioNode* node) { return matches(*node); });
    return found != nodes.end() ? *found : nullptr;
}

// A number is given to another node as soon as it is free; the serial never is.
const AudioNode* CaptureSession::openedNode() const {
    const AudioNode* node = connection_->graph()->node(nodeID_);
    return node != nullptr && node->serial == nodeSerial_ ? node : nullptr;
}

void CaptureSession::open(const AudioNode& node, int rate) {
    stream_.reset();
    const bool capturesSink = target_ == Target::defaultOutput;
    const int channelCount = capturesSink ? 2 : node.channelCount;
    if (thread_ == nullptr) {
        layout_ = {.channelCount = channelCount, .noticeBlocks = BlockContinuity::blocksToWait};
        auto deliver = [this](const float* const* channels, int count, int frames) {
            handlers_.onBlock(channels, count, frames);
            if (!hasDelivered_.exchange(true)) {
                connection_->wake();
            }
        };
        thread_ = std::make_unique<CaptureThread>(identity_.threadName, layout_, deliver,
                                                  handlers_.onLost);
    }
    nodeID_ = node.id;
    nodeSerial_ = node.serial;
    CaptureStream::Request request;
    request.targetSerial = node.serial;
    request.channelCount = channelCount;
    request.rate = rate;
    request.capturesSink = capturesSink;
    request.nodeName = identity_.nodeName;
    request.description = identity_.description;
    request.mediaName = identity_.mediaName;
    CaptureStream::Owner& owner = *this;
    stream_ =
        std::make_unique<CaptureStream>(connection_->core(), request, *thread_, counters_, owner);
}

// The first acceptable rate holds until the next start, whatever becomes of the graph.
bool CaptureSession::acceptFormat(int rate, int channelCount) {
    if (sampleRate_ == 0 ? rate < lowestRate : rate != sampleRate_) {
        return false;
    }
    sampleRate_ = rate;
    const CaptureThread::Layout layout = {.channelCount = channelCount,
                                          .sampleRate = static_cast<double>(rate),
                                          .noticeBlocks = BlockContinuity::blocksToWait};
    if (layout.channelCount != layout_.channelCount || layout.sampleRate != layout_.sampleRate) {
        layout_ = layout;
        thread_->reopen(layout_);
    }
    return true;
}

void CaptureSession::streamChanged() {
    connection_->wake();
}

bool CaptureSession::isLinkedTo(std::uint32_t nodeID) const {
    const auto sources = connection_->graph()->nodesLinkedInto(stream_->nodeID());
    return std::find(sources.begin(), sources.end(), nodeID) != sources.end();
}

bool CaptureSession::isLinkedElsewhere(std::uint32_t nodeID) const {
    if (stream_->nodeID() == SPA_ID_INVALID) {
        return false;
    }
    const auto sources = connection_->graph()->nodesLinkedInto(stream_->nodeID());
    return std::any_of(sources.begin(), sources.end(),
                       [nodeID](std::uint32_t source) { return source != nodeID; });
}

void CaptureSession::serverLost() {
    stream_.reset();
    if (state_ == State::running) {
        lose(AudioSourceLoss::serverLost);
    }
}

void CaptureSession::update() {
    if (state_ == State::running) {
        keepRunning(false);
    }
}

// A stream that the server refused is left to the heartbeat, so that it isn't tried again at once:
// its node is on its way out, or not yet linkable.
void CaptureSession::keepRunning(bool mayRetry) {
    const AudioGraph* graph = connection_->graph();
    if (graph == nullptr) {
        return;
    }
    const AudioNode* node = target_ == Target::device ? openedNode() : wantedNode();
    if (stream_ != nullptr && (node == nullptr || stream_->hasFailed() || stream_->isEnded())) {
        stream_.reset();
    }
    if (node == nullptr) {
        if (target_ == Target::device) {
            lose(AudioSourceLoss::deviceRemoved);
        }
        return;
    }
    const bool isOther = node->serial != nodeSerial_ && node->channelCount > 0;
    const bool isWrongRate = stream_ != nullptr && stream_->isRefused();
    if (isOther || isWrongRate || (stream_ == nullptr && mayRetry)) {
        open(*node, sampleRate_);
    } else if (stream_ != nullptr && isLinkedElsewhere(nodeID_)) {
        lose(AudioSourceLoss::deviceRemoved);
    }
}

void CaptureSession::heartbeat() {
    if (state_ != State::running) {
        return;
    }
    const auto now = Clock::now();
    if (const auto blocks = counters_.blocks.load(); blocks != blocksSeen_) {
        blocksSeen_ = blocks;
        blocksSeenAt_ = now;
    }
    if (stream_ == nullptr && now - blocksSeenAt_ > successionLimit) {
        lose(AudioSourceLoss::deviceRemoved);
    } else if (now - blocksSeenAt_ > stallLimit) {
        lose(AudioSourceLoss::stalled);
    } else {
        keepRunning(true);
    }
}

void CaptureSession::lose(AudioSourceLoss loss) {
    state_ = State::lost;
    stream_.reset();
    nodeID_ = SPA_ID_INVALID;
    if (handlers_.onEnded) {
        handlers_.onEnded(loss);
    }
}

}  // namespace TarvaneKit
