#include "Support/PrivateAudioServer.h"
#include "Support/TestPaths.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include "Core/JSONValue.h"

namespace TarvaneTests {

namespace {

using TarvaneKit::JSONValue;

const std::string script =
    std::string(TarvaneTests::TestPaths::sourceFolder()) + "/Scripts/private-audio/private-audio";

struct Started {
    pid_t pid;
    int output;
};

Started start(const std::vector<std::string>& command) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("pipe2");
    }
    std::vector<char*> arguments;
    for (const std::string& argument : command) {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    const pid_t pid = fork();
    if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        dup2(ends[1], STDOUT_FILENO);
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    close(ends[1]);
    return {pid, ends[0]};
}

std::string stringAt(const JSONValue& value, std::initializer_list<const char*> path) {
    const JSONValue* at = &value;
    for (const char* name : path) {
        at = at->member(name);
        if (at == nullptr) {
            return {};
        }
    }
    const auto* text = std::get_if<std::string>(&at->content);
    return text != nullptr ? *text : std::string();
}

struct NamedNode {
    std::string name;
    int id;
};

std::vector<NamedNode> nodesIn(const std::string& dump) {
    std::vector<NamedNode> result;
    const auto json = JSONValue::parse(dump);
    if (!json) {
        throw std::runtime_error("pw-dump gave no JSON");
    }
    for (const JSONValue& object : std::get<JSONValue::Array>(json->content)) {
        if (stringAt(object, {"type"}) == "PipeWire:Interface:Node") {
            const auto id = std::get<std::int64_t>(object.member("id")->content);
            result.push_back(
                {stringAt(object, {"info", "props", "node.name"}), static_cast<int>(id)});
        }
    }
    return result;
}

std::string quoted(const std::string& text) {
    return "\"" + text + "\"";
}

}  // namespace

ChildProcess::ChildProcess(std::vector<std::string> command) {
    const Started started = start(command);
    pid_ = started.pid;
    output_ = started.output;
}

ChildProcess::~ChildProcess() {
    kill();
    close(output_);
}

std::string ChildProcess::readLine() {
    std::string line;
    for (char c = 0; read(output_, &c, 1) == 1;) {
        if (c == '\n') {
            return line;
        }
        line += c;
    }
    ADD_FAILURE() << "The child process ended without a line: " << line;
    return line;
}

void ChildProcess::kill() {
    if (pid_ > 0) {
        ::kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }
}

void ChildProcess::freeze() {
    ::kill(pid_, SIGSTOP);
}
void ChildProcess::thaw() {
    ::kill(pid_, SIGCONT);
}

PrivateAudioServer::PrivateAudioServer() : PrivateAudioServer(Options{}) {}

PrivateAudioServer::PrivateAudioServer(const Options& options) {
    std::string pattern = "/tmp/tarvane-audio-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("mkdtemp");
    }
    folder_ = pattern;
    setenv("XDG_RUNTIME_DIR", (folder_ + "/run").c_str(), 1);
    unsetenv("PIPEWIRE_REMOTE");
    unsetenv("PULSE_SERVER");
    run({script, "start", folder_, "--rate", std::to_string(options.rate), "--devices",
         options.devices == Devices::standard ? "standard" : "none", "--parent",
         std::to_string(getpid())});
    if (!options.isRunning) {
        kill();
    }
}

PrivateAudioServer::~PrivateAudioServer() {
    run({script, "stop", folder_});
}

void PrivateAudioServer::kill() {
    run({script, "kill", folder_});
}
void PrivateAudioServer::resume() {
    run({script, "resume", folder_});
}
void PrivateAudioServer::freeze() {
    ::kill(serverPID(), SIGSTOP);
}
void PrivateAudioServer::thaw() {
    ::kill(serverPID(), SIGCONT);
}

pid_t PrivateAudioServer::serverPID() const {
    pid_t pid = -1;
    std::ifstream(folder_ + "/pipewire.pid") >> pid;
    return pid;
}

void PrivateAudioServer::setDefaultSource(const std::string& nodeName) {
    run({"pw-metadata", "0", "default.configured.audio.source",
         "{\"name\":" + quoted(nodeName) + "}", "Spa:String:JSON"});
}

void PrivateAudioServer::setDefaultSink(const std::string& nodeName) {
    run({"pw-metadata", "0", "default.configured.audio.sink", "{\"name\":" + quoted(nodeName) + "}",
         "Spa:String:JSON"});
}

void PrivateAudioServer::forceRate(int rate) {
    run({"pw-metadata", "-n", "settings", "0", "clock.force-rate", std::to_string(rate)});
}

void PrivateAudioServer::forceQuantum(int frames) {
    run({"pw-metadata", "-n", "settings", "0", "clock.force-quantum", std::to_string(frames)});
}

void PrivateAudioServer::setSmallestQuantum(int frames) {
    run({"pw-metadata", "-n", "settings", "0", "clock.min-quantum", std::to_string(frames)});
}

void PrivateAudioServer::addNode(const std::string& name, const std::string& mediaClass,
                                 int channels, const std::string& positions) {
    std::string places = positions;
    for (int channel = 0; places.empty() || (positions.empty() && channel < channels); ++channel) {
        places += " AUX" + std::to_string(channel);
    }
    // A node without a name gets none.
    const std::string nodeName = name.empty() ? "" : " node.name=" + quoted(name);
    run({"pw-cli", "create-node", "adapter",
         "{ factory.name=support.null-audio-sink" + nodeName + " node.description=" + quoted(name) +
             " media.class=" + quoted(mediaClass) + " audio.channels=" + std::to_string(channels) +
             " audio.position=[" + places +
             " ] priority.session=50 object.linger=true monitor.channel-volumes=true }"});
}

void PrivateAudioServer::removeNode(const std::string& name) {
    run({"pw-cli", "destroy", std::to_string(nodeID(name))});
}

std::vector<std::string> PrivateAudioServer::nodeNames() const {
    std::vector<std::string> names;
    for (const NamedNode& node : nodesIn(run({"pw-dump"}))) {
        names.push_back(node.name);
    }
    return names;
}

int PrivateAudioServer::nodeCount(const std::string& name) const {
    int count = 0;
    for (const std::string& other : nodeNames()) {
        count += other == name ? 1 : 0;
    }
    return count;
}

int PrivateAudioServer::nodeID(const std::string& name) const {
    for (const NamedNode& node : nodesIn(run({"pw-dump"}))) {
        if (node.name == name) {
            return node.id;
        }
    }
    return -1;
}

std::string PrivateAudioServer::run(const std::vector<std::string>& command) const {
    const Started started = start(command);
    std::string output;
    std::array<char, 4096> part{};
    for (ssize_t count = 0; (count = read(started.output, part.data(), part.size())) > 0;) {
        output.append(part.data(), static_cast<std::size_t>(count));
    }
    close(started.output);
    int status = 0;
    waitpid(started.pid, &status, 0);
    EXPECT_EQ(status, 0) << command[0] << ' ' << (command.size() > 1 ? command[1] : "");
    return output;
}

}  // namespace TarvaneTests
