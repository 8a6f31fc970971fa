#include "AudioIO/PipeWire/AudioGraph.h"

#include <spa/param/audio/format-utils.h>
#include <spa/pod/iter.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <utility>

#include "Core/JSONValue.h"

namespace TarvaneKit {

namespace {

std::string text(const spa_dict& properties, const char* key) {
    const char* value = spa_dict_lookup(&properties, key);
    return value != nullptr ? value : "";
}

std::uint32_t number(const spa_dict& properties, const char* key) {
    return static_cast<std::uint32_t>(std::strtoul(text(properties, key).c_str(), nullptr, 10));
}

std::optional<AudioNode::Kind> kindOfClass(const std::string& mediaClass) {
    if (mediaClass == "Audio/Source" || mediaClass == "Audio/Source/Virtual") {
        return AudioNode::Kind::source;
    }
    if (mediaClass == "Audio/Sink") {
        return AudioNode::Kind::sink;
    }
    if (mediaClass == "Audio/Duplex") {
        return AudioNode::Kind::duplex;
    }
    return std::nullopt;
}

// A format may name its channels as a number or as a choice, whose first value is the default.
int channelsOfFormat(const spa_pod& format) {
    const spa_pod_prop* property = spa_pod_find_prop(&format, nullptr, SPA_FORMAT_AUDIO_channels);
    if (property == nullptr) {
        return 0;
    }
    std::uint32_t valueCount = 0;
    std::uint32_t choice = 0;
    const spa_pod* values = spa_pod_get_values(&property->value, &valueCount, &choice);
    if (values == nullptr || values->type != SPA_TYPE_Int || valueCount == 0) {
        return 0;
    }
    const int channels = *static_cast<const std::int32_t*>(SPA_POD_BODY_CONST(values));
    return std::clamp(channels, 0, static_cast<int>(SPA_AUDIO_MAX_CHANNELS));
}

// The default's name out of {"name":"…"}.
std::string nameInValue(const char* value) {
    const auto json = value != nullptr ? JSONValue::parse(value) : std::nullopt;
    const JSONValue* name = json ? json->member("name") : nullptr;
    const auto* string = name != nullptr ? std::get_if<std::string>(&name->content) : nullptr;
    return string != nullptr ? *string : std::string();
}

}  // namespace

AudioInputDevice AudioNode::deviceRecord() const {
    const std::string& called = description.empty() ? name : description;
    return {id, uid, called.empty() ? "Unknown Device" : called, channelCount};
}

struct AudioGraph::BoundNode {
    AudioGraph& graph;
    AudioNode node;
    pw_proxy* proxy = nullptr;
    spa_hook hook = {};

    BoundNode(AudioGraph& owner, pw_proxy* bound) : graph(owner), proxy(bound) {}
    ~BoundNode() {
        spa_hook_remove(&hook);
        pw_proxy_destroy(proxy);
    }
    BoundNode(const BoundNode&) = delete;
    BoundNode& operator=(const BoundNode&) = delete;

    void listen();
    static void onInfo(void* data, const pw_node_info* info);
    static void onParam(void* data, int sequence, std::uint32_t id, std::uint32_t index,
                        std::uint32_t next, const spa_pod* param);
};

void AudioGraph::BoundNode::listen() {
    static const pw_node_events events = [] {
        pw_node_events e = {};
        e.version = PW_VERSION_NODE_EVENTS;
        e.info = onInfo;
        e.param = onParam;
        return e;
    }();
    auto* interface = reinterpret_cast<pw_node*>(proxy);
    pw_node_add_listener(interface, &hook, &events, this);
    std::uint32_t ids[] = {SPA_PARAM_EnumFormat, SPA_PARAM_Props};
    pw_node_subscribe_params(interface, ids, 2);
}

// The registry's own properties are a selection; the node's are all of them.
void AudioGraph::BoundNode::onInfo(void* data, const pw_node_info* info) {
    auto& self = *static_cast<BoundNode*>(data);
    if (info == nullptr || info->props == nullptr ||
        (info->change_mask & PW_NODE_CHANGE_MASK_PROPS) == 0) {
        return;
    }
    const std::string isVirtual = text(*info->props, PW_KEY_NODE_VIRTUAL);
    self.node.isVirtual =
        text(*info->props, PW_KEY_DEVICE_ID).empty() || isVirtual == "true" || isVirtual == "1";
    if (!text(*info->props, PW_KEY_DEVICE_ID).empty()) {
        self.node.cardID = number(*info->props, PW_KEY_DEVICE_ID);
        self.node.cardDevice =
            static_cast<std::int32_t>(number(*info->props, "card.profile.device"));
    }
    self.graph.nameInput(self.node, text(*info->props, PW_KEY_NODE_NAME));
    self.node.description = text(*info->props, PW_KEY_NODE_DESCRIPTION);
    self.graph.changed_();
}

// A node that lists several formats, as a card may, is counted by the one of most channels.
void AudioGraph::BoundNode::onParam(void* data, int, std::uint32_t id, std::uint32_t index,
                                    std::uint32_t, const spa_pod* param) {
    auto& self = *static_cast<BoundNode*>(data);
    if (param == nullptr) {
        return;
    }
    if (id == SPA_PARAM_Props) {
        self.node.controls.take(*param);
        self.graph.changed_();
        return;
    }
    const int channels = channelsOfFormat(*param);
    const int best = index == 0 ? channels : std::max(channels, self.node.channelCount);
    if (best > 0 && best != self.node.channelCount) {
        self.node.channelCount = best;
        self.graph.changed_();
    }
}

// A sound card and its routes, by the part of the card that each is for.
struct AudioGraph::BoundCard {
    AudioGraph& graph;
    pw_proxy* proxy = nullptr;
    spa_hook hook = {};
    std::map<std::int32_t, CardRoute> routes;

    BoundCard(AudioGraph& owner, pw_proxy* bound) : graph(owner), proxy(bound) {
        static const pw_device_events events = [] {
            pw_device_events e = {};
            e.version = PW_VERSION_DEVICE_EVENTS;
            e.param = onParam;
            return e;
        }();
        auto* interface = reinterpret_cast<pw_device*>(proxy);
        pw_device_add_listener(interface, &hook, &events, this);
        std::uint32_t ids[] = {SPA_PARAM_Route};
        pw_device_subscribe_params(interface, ids, 1);
    }
    ~BoundCard() {
        spa_hook_remove(&hook);
        pw_proxy_destroy(proxy);
    }
    BoundCard(const BoundCard&) = delete;
    BoundCard& operator=(const BoundCard&) = delete;

    static void onParam(void* data, int, std::uint32_t id, std::uint32_t, std::uint32_t,
                        const spa_pod* param) {
        auto& self = *static_cast<BoundCard*>(data);
        const auto route =
            id == SPA_PARAM_Route && param != nullptr ? CardRoute::read(*param) : std::nullopt;
        if (route) {
            self.routes.insert_or_assign(route->device, *route);
            self.graph.changed_();
        }
    }
};

AudioGraph::AudioGraph(pw_core* core, std::function<void()> changed)
    : core_(core), changed_(std::move(changed)) {
    static const pw_registry_events events = [] {
        pw_registry_events e = {};
        e.version = PW_VERSION_REGISTRY_EVENTS;
        e.global = onGlobal;
        e.global_remove = onGlobalRemove;
        return e;
    }();
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    if (registry_ != nullptr) {
        pw_registry_add_listener(registry_, &registryHook_, &events, this);
    }
    pendingSync_ = pw_core_sync(core_, PW_ID_CORE, 0);
}

AudioGraph::~AudioGraph() {
    nodes_.clear();
    cards_.clear();
    if (metadata_ != nullptr) {
        spa_hook_remove(&metadataHook_);
        pw_proxy_destroy(metadata_);
    }
    if (registry_ != nullptr) {
        spa_hook_remove(&registryHook_);
        pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
}

// The first reply says that all objects have been announced, the second that those which were
// bound meanwhile have reported their properties.
void AudioGraph::syncDone(int sequence) {
    if (sequence != pendingSync_ || syncsDone_ >= syncsNeeded) {
        return;
    }
    if (++syncsDone_ < syncsNeeded) {
        pendingSync_ = pw_core_sync(core_, PW_ID_CORE, 0);
    }
    changed_();
}

std::vector<const AudioNode*> AudioGraph::nodes() const {
    std::vector<const AudioNode*> result;
    for (const auto& bound : nodes_) {
        result.push_back(&bound->node);
    }
    return result;
}

const AudioNode* AudioGraph::node(std::uint32_t id) const {
    const auto found = std::find_if(nodes_.begin(), nodes_.end(),
                                    [id](const auto& bound) { return bound->node.id == id; });
    return found != nodes_.end() ? &(*found)->node : nullptr;
}

const AudioNode* AudioGraph::outputOrInput(const std::string& name, bool wantsInput) const {
    for (const auto& bound : nodes_) {
        const AudioNode& node = bound->node;
        if (!name.empty() && node.name == name && (wantsInput ? node.isInput() : node.isOutput())) {
            return &node;
        }
    }
    return nullptr;
}

const AudioNode* AudioGraph::defaultSource() const {
    return outputOrInput(defaultSourceName_, true);
}

const AudioNode* AudioGraph::defaultSink() const {
    return outputOrInput(defaultSinkName_, false);
}

const CardRoute* AudioGraph::route(const AudioNode& node) const {
    const auto card = node.cardID ? cards_.find(*node.cardID) : cards_.end();
    if (card == cards_.end()) {
        return nullptr;
    }
    const auto& routes = card->second->routes;
    const auto found = routes.find(node.cardDevice.value_or(0));
    return found != routes.end() ? &found->second : nullptr;
}

InputControls AudioGraph::controls(const AudioNode& node) const {
    const CardRoute* ofCard = route(node);
    InputControls result = ofCard != nullptr ? ofCard->controls : node.controls;
    result.channelCount = node.channelCount;
    return result;
}

bool AudioGraph::setControls(std::uint32_t nodeID, const InputControls& controls) {
    const auto bound = std::find_if(nodes_.begin(), nodes_.end(), [nodeID](const auto& candidate) {
        return candidate->node.id == nodeID;
    });
    if (bound == nodes_.end()) {
        return false;
    }
    std::vector<std::uint8_t> buffer;
    if (const CardRoute* current = route((*bound)->node)) {
        CardRoute wanted = *current;
        wanted.controls = controls;
        auto* card = reinterpret_cast<pw_device*>(cards_.at((*bound)->node.cardID.value())->proxy);
        return pw_device_set_param(card, SPA_PARAM_Route, 0, buildRoute(wanted, buffer)) >= 0;
    }
    auto* node = reinterpret_cast<pw_node*>((*bound)->proxy);
    return pw_node_set_param(node, SPA_PARAM_Props, 0, buildProps(controls, buffer)) >= 0;
}

std::vector<std::uint32_t> AudioGraph::nodesLinkedInto(std::uint32_t nodeID) const {
    std::vector<std::uint32_t> result;
    for (const auto& [id, link] : links_) {
        if (link.inputNode == nodeID) {
            result.push_back(link.outputNode);
        }
    }
    return result;
}

void AudioGraph::onGlobal(void* data, std::uint32_t id, std::uint32_t, const char* type,
                          std::uint32_t, const spa_dict* properties) {
    auto& self = *static_cast<AudioGraph*>(data);
    if (properties == nullptr) {
        return;
    }
    if (std::strcmp(type, PW_TYPE_INTERFACE_Node) == 0) {
        self.addNode(id, *properties);
    } else if (std::strcmp(type, PW_TYPE_INTERFACE_Device) == 0) {
        self.addCard(id, *properties);
    } else if (std::strcmp(type, PW_TYPE_INTERFACE_Link) == 0) {
        self.links_[id] = {number(*properties, PW_KEY_LINK_OUTPUT_NODE),
                           number(*properties, PW_KEY_LINK_INPUT_NODE)};
        self.changed_();
    } else if (std::strcmp(type, PW_TYPE_INTERFACE_Metadata) == 0) {
        self.addMetadata(id, *properties);
    }
}

void AudioGraph::addNode(std::uint32_t id, const spa_dict& properties) {
    const auto kind = kindOfClass(text(properties, PW_KEY_MEDIA_CLASS));
    if (!kind) {
        return;
    }
    auto* proxy = static_cast<pw_proxy*>(
        pw_registry_bind(registry_, id, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0));
    if (proxy == nullptr) {
        return;
    }
    auto bound = std::make_unique<BoundNode>(*this, proxy);
    bound->node.id = id;
    bound->node.serial = text(properties, PW_KEY_OBJECT_SERIAL);
    bound->node.kind = *kind;
    nameInput(bound->node, text(properties, PW_KEY_NODE_NAME));
    bound->node.description = text(properties, PW_KEY_NODE_DESCRIPTION);
    bound->listen();
    nodes_.push_back(std::move(bound));
    changed_();
}

// A node keeps its uid for its life, also when the one whose name it has goes.
void AudioGraph::nameInput(AudioNode& node, const std::string& name) const {
    if (!node.uid.empty() && node.name == name) {
        return;
    }
    node.name = name;
    node.uid = name;
    const bool isTaken = std::any_of(nodes_.begin(), nodes_.end(), [&](const auto& other) {
        return &other->node != &node && other->node.isInput() && other->node.uid == name;
    });
    if (name.empty() || isTaken) {
        node.uid += "#" + node.serial;
    }
}

void AudioGraph::addCard(std::uint32_t id, const spa_dict& properties) {
    if (text(properties, PW_KEY_MEDIA_CLASS) != "Audio/Device") {
        return;
    }
    auto* proxy = static_cast<pw_proxy*>(
        pw_registry_bind(registry_, id, PW_TYPE_INTERFACE_Device, PW_VERSION_DEVICE, 0));
    if (proxy != nullptr) {
        cards_.insert_or_assign(id, std::make_unique<BoundCard>(*this, proxy));
    }
}

void AudioGraph::addMetadata(std::uint32_t id, const spa_dict& properties) {
    if (metadata_ != nullptr || text(properties, PW_KEY_METADATA_NAME) != "default") {
        return;
    }
    metadata_ = static_cast<pw_proxy*>(
        pw_registry_bind(registry_, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
    if (metadata_ == nullptr) {
        return;
    }
    static const pw_metadata_events events = [] {
        pw_metadata_events e = {};
        e.version = PW_VERSION_METADATA_EVENTS;
        e.property = onMetadata;
        return e;
    }();
    metadataID_ = id;
    pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(metadata_), &metadataHook_, &events,
                             this);
}

int AudioGraph::onMetadata(void* data, std::uint32_t subject, const char* key, const char*,
                           const char* value) {
    auto& self = *static_cast<AudioGraph*>(data);
    if (subject != PW_ID_CORE) {
        return 0;
    }
    self.defaultsSeen_ = true;
    // Without a key all of the subject's keys are gone.
    if (key == nullptr || std::strcmp(key, "default.audio.source") == 0) {
        self.defaultSourceName_ = nameInValue(key != nullptr ? value : nullptr);
    }
    if (key == nullptr || std::strcmp(key, "default.audio.sink") == 0) {
        self.defaultSinkName_ = nameInValue(key != nullptr ? value : nullptr);
    }
    self.changed_();
    return 0;
}

void AudioGraph::onGlobalRemove(void* data, std::uint32_t id) {
    auto& self = *static_cast<AudioGraph*>(data);
    if (self.metadata_ != nullptr && id == self.metadataID_) {
        spa_hook_remove(&self.metadataHook_);
        pw_proxy_destroy(std::exchange(self.metadata_, nullptr));
        self.defaultSourceName_.clear();
        self.defaultSinkName_.clear();
    }
    self.links_.erase(id);
    self.cards_.erase(id);
    std::erase_if(self.nodes_, [id](const auto& bound) { return bound->node.id == id; });
    self.changed_();
}

}  // namespace TarvaneKit
