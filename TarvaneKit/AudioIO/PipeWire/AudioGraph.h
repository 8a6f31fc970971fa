// What PipeWire's registry tells of the machine's audio: its sources and sinks with their channel
// counts, which of them are the defaults, and which node is linked to which.
//
// One graph belongs to one connection to the server and goes with it. All of it happens under the
// thread loop's lock. But for the volume of an input that the user sets it only listens; nothing
// on the server is changed.
#pragma once

#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "AudioIO/AudioInputDevice.h"
#include "AudioIO/PipeWire/InputControls.h"

namespace TarvaneKit {

struct AudioNode {
    enum class Kind { source, sink, duplex };

    std::uint32_t id = 0;  ///< PipeWire's global id
    std::string serial;    ///< unique for the server's life, where ids are used again
    Kind kind = Kind::source;
    std::string uid;          ///< of an input; see `AudioGraph`
    std::string name;         ///< `node.name`, the same from one plugging to the next
    std::string description;  ///< for people
    int channelCount = 0;     ///< 0 until it is known
    bool isVirtual = false;   ///< no hardware device behind it
    InputControls controls;   ///< the node's own; a card's node has them in its route

    std::optional<std::uint32_t> cardID;     ///< the sound card that the node is a part of
    std::optional<std::int32_t> cardDevice;  ///< which part

    bool isInput() const { return kind != Kind::sink; }
    bool isOutput() const { return kind != Kind::source; }
    /// As lists show it and settings store it. An input that comes over a network has a name and
    /// often no description.
    AudioInputDevice deviceRecord() const;
};

// An input's uid is its `node.name`. A second node of a name that is taken, and a node without one,
// have their serial in it: they can be chosen for as long as the server lives, and what is stored
// of them never comes to mean another device.
class AudioGraph {
  public:
    /// `changed` is called inside PipeWire's callbacks: it may only take note.
    AudioGraph(pw_core* core, std::function<void()> changed);
    ~AudioGraph();
    AudioGraph(const AudioGraph&) = delete;
    AudioGraph& operator=(const AudioGraph&) = delete;

    /// The nodes that were there when the graph was made are known with their channel counts.
    bool isListed() const { return syncsDone_ >= syncsNeeded; }
    /// The defaults have been announced, if only that there are none.
    bool knowsDefaults() const { return defaultsSeen_; }

    /// In the order in which the server announced them.
    std::vector<const AudioNode*> nodes() const;
    /// Null when there is no such node.
    const AudioNode* node(std::uint32_t id) const;
    const AudioNode* defaultSource() const;
    const AudioNode* defaultSink() const;

    /// The nodes whose output is linked to an input of this node.
    std::vector<std::uint32_t> nodesLinkedInto(std::uint32_t nodeID) const;

    /// The controls that act on the node's samples: its own, or its card's.
    InputControls controls(const AudioNode& node) const;
    /// Asks the server to set the volumes; false where nothing could be asked.
    bool setControls(std::uint32_t nodeID, const InputControls& controls);

    /// A reply to the graph's own round trip to the server.
    void syncDone(int sequence);

  private:
    struct BoundNode;
    struct BoundCard;

    static void onGlobal(void* data, std::uint32_t id, std::uint32_t permissions, const char* type,
                         std::uint32_t version, const spa_dict* properties);
    static void onGlobalRemove(void* data, std::uint32_t id);
    static int onMetadata(void* data, std::uint32_t subject, const char* key, const char* type,
                          const char* value);

    void addNode(std::uint32_t id, const spa_dict& properties);
    void nameInput(AudioNode& node, const std::string& name) const;
    void addCard(std::uint32_t id, const spa_dict& properties);
    /// Null for a node that is no part of a card, or whose card has no route for it.
    const CardRoute* route(const AudioNode& node) const;
    void addMetadata(std::uint32_t id, const spa_dict& properties);
    const AudioNode* outputOrInput(const std::string& name, bool wantsInput) const;

    static constexpr int syncsNeeded = 2;

    struct Link {
        std::uint32_t outputNode = 0;
        std::uint32_t inputNode = 0;
    };

    pw_core* const core_;
    const std::function<void()> changed_;
    pw_registry* registry_ = nullptr;
    spa_hook registryHook_ = {};
    pw_proxy* metadata_ = nullptr;
    std::uint32_t metadataID_ = 0;
    spa_hook metadataHook_ = {};
    bool defaultsSeen_ = false;
    std::string defaultSourceName_;
    std::string defaultSinkName_;
    std::vector<std::unique_ptr<BoundNode>> nodes_;
    std::map<std::uint32_t, std::unique_ptr<BoundCard>> cards_;
    std::map<std::uint32_t, Link> links_;
    int pendingSync_ = 0;
    int syncsDone_ = 0;
};

}  // namespace TarvaneKit
