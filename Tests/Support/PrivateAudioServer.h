// A PipeWire server with a session manager of its own for one test: a fresh runtime folder, no
// hardware, a few made-up devices. The test's process becomes its client by the environment that
// is set here. It ends with this object, or with the test's process, however that ends.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace TarvaneTests {

/// A child process that ends with its parent; killed on destruction.
class ChildProcess {
  public:
    explicit ChildProcess(std::vector<std::string> command);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Waits for a line on its standard output; fails the test when it ends without one.
    std::string readLine();
    void kill();
    /// Stops it in its tracks, as a hung process.
    void freeze();
    void thaw();

  private:
    pid_t pid_ = -1;
    int output_ = -1;
};

class PrivateAudioServer {
  public:
    enum class Devices { standard, none };
    struct Options {
        int rate = 48000;
        Devices devices = Devices::standard;
        bool isRunning = true;  ///< else the first `resume` starts it
    };

    // The devices of the standard set.
    static constexpr const char* micName = "tarvane.test.mic";               // 1 channel, default
    static constexpr const char* interfaceName = "tarvane.test.interface8";  // 8 channels
    static constexpr const char* speakersName = "tarvane.test.speakers";     // a sink of 2

    PrivateAudioServer();
    explicit PrivateAudioServer(const Options& options);
    ~PrivateAudioServer();
    PrivateAudioServer(const PrivateAudioServer&) = delete;
    PrivateAudioServer& operator=(const PrivateAudioServer&) = delete;

    /// Ends the daemons at once, as a crash would.
    void kill();
    void resume();
    /// Stops the server in its tracks, as a hung process, and lets it go on.
    void freeze();
    void thaw();

    void setDefaultSource(const std::string& nodeName);
    void setDefaultSink(const std::string& nodeName);
    /// The graph's rate, for all clients.
    void forceRate(int rate);
    /// The frames of a turn of the graph, for all clients; 0 leaves it to them again.
    void forceQuantum(int frames);
    void setSmallestQuantum(int frames);
    /// Adds a null sink or virtual source of the server's own; an empty name is none. Positions as
    /// "FL FR"; without any they are AUX0, AUX1 …
    void addNode(const std::string& name, const std::string& mediaClass, int channels,
                 const std::string& positions = {});
    void removeNode(const std::string& name);

    /// The names of all nodes that the server has.
    std::vector<std::string> nodeNames() const;
    int nodeCount(const std::string& name) const;
    /// The global id of the node of that name, or -1.
    int nodeID(const std::string& name) const;

    /// Runs a command as a client of the server and gives its output; fails the test when the
    /// command fails.
    std::string run(const std::vector<std::string>& command) const;

  private:
    std::string folder_;
    pid_t serverPID() const;
};

}  // namespace TarvaneTests
