// tarvane-tone-source: a made-up audio device with a known signal.
//
// Exports an input device ("Audio/Source") of the private audio server, or plays into a sink. All
// channels start together at frame 0 when somebody listens. Ending the process, however it ends,
// is unplugging the device. Prints "ready" when the server knows the node.
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numbers>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr const char* usage = R"(usage: tarvane-tone-source [options] [signals]

  --name NAME          node name, the device's uid (tarvane.tone)
  --description TEXT   the name that people see; empty: none (Tone Source)
  --channels N         1 to 64 (1)
  --also-channels N    offers a second format, of so many channels
  --rate HZ            of the signal (48000)
  --graph-rate         run at the audio graph's own rate; the signal keeps its frequencies
  --virtual            be a virtual source
  --priority N         the highest is the default input (100)
  --sink NAME          play into the sink of that name rather than be a device
  --stall-after SEC    deliver nothing any more after so long; 0: never deliver anything

signals; without one all channels are silent
  --tone HZ:DBFS       a sine on every channel, dBFS of its peak
  --tone CH=HZ:DBFS    a sine on one channel, counted from 1
  --pulse DB           tones are so much louder for 0.3 s in every 1.3 s; prints "pulse" and when the
                       server's turn began that brings the first of it, in ns of CLOCK_MONOTONIC
  --noise DBFS         white noise with that peak, different on every channel
  --counter            frame n of channel c (from 0) is ((n mod 65536) * 128 + c) / 2^23, exactly
  --clock              each frame's number by the audio server's clock, mod 2^23, / 2^23, exactly
  --file PATH          a WAV file of 32-bit floats, or else raw interleaved floats, then silence
)";

struct Tone {
    double frequencyHz = 0;
    double amplitude = 0;
};

struct Options {
    std::string name = "tarvane.tone";
    std::string description = "Tone Source";
    std::string sink;
    std::string priority = "100";
    int channels = 1;
    int alsoChannels = 0;  // 0: one format alone
    int rate = 48000;
    bool usesGraphRate = false;
    bool isVirtual = false;
    double stallAfterSeconds = -1;
    std::vector<std::string> tones;
    double pulseGain = 1;
    double noiseAmplitude = 0;
    bool isCounter = false;
    bool isClock = false;
    std::string file;
};

double amplitude(double levelDBFS) {
    return std::pow(10.0, levelDBFS / 20.0);
}

double number(const std::string& text) {
    std::size_t used = 0;
    const double value = std::stod(text, &used);
    if (used != text.size()) {
        throw std::invalid_argument(text);
    }
    return value;
}

Options parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& key = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 >= arguments.size()) {
                throw std::invalid_argument(key + " needs a value");
            }
            return arguments[++i];
        };
        if (key == "--name") {
            options.name = value();
        } else if (key == "--description") {
            options.description = value();
        } else if (key == "--channels") {
            options.channels = static_cast<int>(number(value()));
        } else if (key == "--also-channels") {
            options.alsoChannels = static_cast<int>(number(value()));
        } else if (key == "--rate") {
            options.rate = static_cast<int>(number(value()));
        } else if (key == "--graph-rate") {
            options.usesGraphRate = true;
        } else if (key == "--virtual") {
            options.isVirtual = true;
        } else if (key == "--priority") {
            options.priority = value();
        } else if (key == "--sink") {
            options.sink = value();
        } else if (key == "--stall-after") {
            options.stallAfterSeconds = number(value());
        } else if (key == "--tone") {
            options.tones.push_back(value());
        } else if (key == "--pulse") {
            options.pulseGain = amplitude(number(value()));
        } else if (key == "--noise") {
            options.noiseAmplitude = amplitude(number(value()));
        } else if (key == "--counter") {
            options.isCounter = true;
        } else if (key == "--clock") {
            options.isClock = true;
        } else if (key == "--file") {
            options.file = value();
        } else {
            throw std::invalid_argument("unknown option " + key);
        }
    }
    if (options.channels < 1 || options.channels > static_cast<int>(SPA_AUDIO_MAX_CHANNELS) ||
        options.alsoChannels < 0 ||
        options.alsoChannels > static_cast<int>(SPA_AUDIO_MAX_CHANNELS) || options.rate < 1) {
        throw std::invalid_argument("channels or rate out of range");
    }
    return options;
}

std::vector<Tone> tonesOf(const Options& options) {
    std::vector<Tone> tones(static_cast<std::size_t>(options.channels));
    for (const std::string& text : options.tones) {
        const auto equals = text.find('=');
        const std::string tone = equals == std::string::npos ? text : text.substr(equals + 1);
        const auto colon = tone.find(':');
        if (colon == std::string::npos) {
            throw std::invalid_argument("--tone " + text);
        }
        const Tone value{number(tone.substr(0, colon)), amplitude(number(tone.substr(colon + 1)))};
        if (equals == std::string::npos) {
            tones.assign(tones.size(), value);
        } else {
            tones.at(static_cast<std::size_t>(number(text.substr(0, equals))) - 1) = value;
        }
    }
    return tones;
}

template <typename T>
T littleEndian(const std::vector<char>& bytes, std::size_t offset) {
    T value{};
    if (offset + sizeof value > bytes.size()) {
        throw std::invalid_argument("the file ends early");
    }
    std::memcpy(&value, &bytes[offset], sizeof value);
    return value;
}

// Interleaved samples of a file with the given count of channels.
std::vector<float> samplesOf(const std::string& path, int channels) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::invalid_argument("can't read " + path);
    }
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    std::size_t begin = 0;
    std::size_t size = bytes.size();
    if (size >= 12 && std::memcmp(bytes.data(), "RIFF", 4) == 0) {
        // Chunks of a four-letter name, a size, and that many bytes, padded to an even count.
        size = 0;
        for (std::size_t at = 12; at + 8 <= bytes.size();) {
            const auto length = littleEndian<std::uint32_t>(bytes, at + 4);
            if (std::memcmp(&bytes[at], "fmt ", 4) == 0 &&
                (littleEndian<std::uint16_t>(bytes, at + 10) != channels ||
                 littleEndian<std::uint16_t>(bytes, at + 22) != 32)) {
                throw std::invalid_argument("not 32 bits on that many channels: " + path);
            }
            if (std::memcmp(&bytes[at], "data", 4) == 0) {
                begin = at + 8;
                size = std::min<std::size_t>(length, bytes.size() - begin);
                break;
            }
            at += 8 + length + length % 2;
        }
    }
    std::vector<float> samples(size / sizeof(float));
    if (!samples.empty()) {
        std::memcpy(samples.data(), &bytes[begin], samples.size() * sizeof(float));
    }
    return samples;
}

class Signal {
  public:
    explicit Signal(const Options& options)
        : options_(options), tones_(tonesOf(options)), rate_(options.rate) {
        if (!options.file.empty()) {
            file_ = samplesOf(options.file, options.channels);
        }
    }

    void restart() { frame_ = 0; }
    /// The server's number of the next frame.
    void setClock(std::uint64_t frame) {
        if (options_.isClock) {
            frame_ = frame;
        }
    }
    void setRate(int rate) { rate_ = rate; }

    /// Writes the next frames of one channel; `advance` follows when all channels have theirs.
    void fill(int channel, float* samples, std::uint32_t count) {
        const auto index = static_cast<std::size_t>(channel);
        const double step = 2.0 * std::numbers::pi * tones_[index].frequencyHz / rate_;
        for (std::uint32_t i = 0; i < count; ++i) {
            const std::uint64_t frame = frame_ + i;
            if (options_.isCounter) {
                const auto code = static_cast<std::uint32_t>(frame % 65536 * 128) +
                                  static_cast<std::uint32_t>(channel);
                samples[i] = static_cast<float>(code) / 8388608.0f;
            } else if (options_.isClock) {
                samples[i] = static_cast<float>(frame % 8388608) / 8388608.0f;
            } else if (!file_.empty()) {
                const std::size_t at = frame * static_cast<std::size_t>(options_.channels) + index;
                samples[i] = at < file_.size() ? file_[at] : 0.0f;
            } else if (options_.noiseAmplitude > 0) {
                samples[i] = static_cast<float>(options_.noiseAmplitude * uniform_(random_));
            } else {
                samples[i] = static_cast<float>(gain_ * tones_[index].amplitude *
                                                std::sin(step * static_cast<double>(frame)));
            }
        }
    }
    void advance(std::uint32_t count) { frame_ += count; }

    /// Once ahead of each turn; whether a pulse begins with it.
    bool beginsPulse() {
        const double phase = std::fmod(static_cast<double>(frame_) / rate_, pulsePeriodSeconds);
        const bool wasInPulse = std::exchange(isInPulse_, phase >= pulsePauseSeconds);
        gain_ = isInPulse_ ? options_.pulseGain : 1.0;
        return options_.pulseGain != 1.0 && isInPulse_ && !wasInPulse;
    }

  private:
    static constexpr double pulsePauseSeconds = 1.0;
    static constexpr double pulsePeriodSeconds = 1.3;

    const Options& options_;
    std::vector<Tone> tones_;
    std::vector<float> file_;
    int rate_;
    std::uint64_t frame_ = 0;
    bool isInPulse_ = false;
    double gain_ = 1.0;
    std::mt19937 random_{1};
    std::uniform_real_distribution<double> uniform_{-1.0, 1.0};
};

// A node that drives its own group of the graph decides itself when there is a cycle: the way to a
// device that is there and delivers nothing.
class Source {
  public:
    Source(const Options& options, pw_main_loop* loop)
        : options_(options), loop_(loop), signal_(options) {}
    ~Source() {
        if (stream_ != nullptr) {
            pw_stream_destroy(stream_);
        }
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    bool open();

  private:
    bool isDriver() const { return options_.stallAfterSeconds >= 0; }
    pw_properties* properties() const;
    static void onStateChanged(void* data, pw_stream_state old, pw_stream_state state,
                               const char* error);
    static void onParamChanged(void* data, std::uint32_t id, const spa_pod* param);
    static void onAreaChanged(void* data, std::uint32_t id, void* area, std::uint32_t size);
    static void onProcess(void* data);
    static void onTimer(void* data, std::uint64_t count);

    const Options& options_;
    pw_main_loop* const loop_;
    Signal signal_;
    pw_stream* stream_ = nullptr;
    const spa_io_position* position_ = nullptr;  ///< of the graph, in its data thread
    spa_source* timer_ = nullptr;
    std::int64_t cyclesLeft_ = 0;
    bool saidReady_ = false;
};

constexpr int driverQuantum = 256;

pw_properties* Source::properties() const {
    pw_properties* result = pw_properties_new(PW_KEY_NODE_NAME, options_.name.c_str(),  //
                                              PW_KEY_APP_NAME, "tarvane-tone-source",   //
                                              PW_KEY_MEDIA_TYPE, "Audio",               //
                                              PW_KEY_NODE_LATENCY, "256/48000", nullptr);
    if (!options_.description.empty()) {
        pw_properties_set(result, PW_KEY_NODE_DESCRIPTION, options_.description.c_str());
    }
    if (!options_.sink.empty()) {
        pw_properties_set(result, PW_KEY_MEDIA_CATEGORY, "Playback");
        pw_properties_set(result, PW_KEY_TARGET_OBJECT, options_.sink.c_str());
        // What goes into the front speakers doesn't spread to the others.
        pw_properties_set(result, "channelmix.upmix", "false");
        return result;
    }
    pw_properties_set(result, PW_KEY_MEDIA_CLASS,
                      options_.isVirtual ? "Audio/Source/Virtual" : "Audio/Source");
    pw_properties_set(result, PW_KEY_PRIORITY_SESSION, options_.priority.c_str());
    if (isDriver()) {
        pw_properties_set(result, PW_KEY_PRIORITY_DRIVER, "40000");
        pw_properties_set(result, PW_KEY_NODE_DRIVER, "true");
    }
    return result;
}

bool Source::open() {
    static const pw_stream_events events = [] {
        pw_stream_events e = {};
        e.version = PW_VERSION_STREAM_EVENTS;
        e.state_changed = onStateChanged;
        e.param_changed = onParamChanged;
        e.io_changed = onAreaChanged;
        e.process = onProcess;
        return e;
    }();
    pw_loop* loop = pw_main_loop_get_loop(loop_);
    stream_ = pw_stream_new_simple(loop, options_.name.c_str(), properties(), &events, this);
    if (stream_ == nullptr) {
        return false;
    }
    if (isDriver()) {
        timer_ = pw_loop_add_timer(loop, onTimer, this);
        cyclesLeft_ =
            static_cast<std::int64_t>(options_.stallAfterSeconds * options_.rate / driverQuantum);
    }
    spa_audio_info_raw info = {};
    info.format = SPA_AUDIO_FORMAT_F32P;
    info.rate = options_.usesGraphRate ? 0 : static_cast<std::uint32_t>(options_.rate);
    info.channels = static_cast<std::uint32_t>(options_.channels);
    for (std::uint32_t channel = 0; channel < SPA_AUDIO_MAX_CHANNELS; ++channel) {
        info.position[channel] = SPA_AUDIO_CHANNEL_AUX0 + channel;
    }
    if (!options_.sink.empty() && (options_.channels == 2 || options_.channels == 6)) {
        std::ranges::copy(
            std::array{SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR, SPA_AUDIO_CHANNEL_FC,
                       SPA_AUDIO_CHANNEL_LFE, SPA_AUDIO_CHANNEL_RL, SPA_AUDIO_CHANNEL_RR},
            info.position);
    }
    std::uint8_t storage[1024];
    spa_pod_builder builder = {};
    spa_pod_builder_init(&builder, storage, sizeof storage);
    const spa_pod* params[] = {spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info),
                               nullptr};
    if (options_.alsoChannels > 0) {
        info.channels = static_cast<std::uint32_t>(options_.alsoChannels);
        params[1] = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
    }
    unsigned flags = PW_STREAM_FLAG_MAP_BUFFERS | PW_STREAM_FLAG_RT_PROCESS;
    flags |= options_.sink.empty() ? 0u : static_cast<unsigned>(PW_STREAM_FLAG_AUTOCONNECT);
    flags |= isDriver() ? static_cast<unsigned>(PW_STREAM_FLAG_DRIVER) : 0u;
    return pw_stream_connect(stream_, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                             static_cast<pw_stream_flags>(flags), params,
                             options_.alsoChannels > 0 ? 2 : 1) >= 0;
}

void Source::onStateChanged(void* data, pw_stream_state old, pw_stream_state state,
                            const char* error) {
    auto& self = *static_cast<Source*>(data);
    if (state == PW_STREAM_STATE_ERROR || (state == PW_STREAM_STATE_UNCONNECTED && old != state)) {
        std::fprintf(stderr, "tarvane-tone-source: %s\n", error != nullptr ? error : "ended");
        pw_main_loop_quit(self.loop_);
    }
    const bool isAwaited = self.options_.sink.empty() ? state == PW_STREAM_STATE_PAUSED
                                                      : state == PW_STREAM_STATE_STREAMING;
    if (isAwaited && !self.saidReady_) {
        self.saidReady_ = true;
        std::puts("ready");
        std::fflush(stdout);
    }
    if (state == PW_STREAM_STATE_PAUSED) {
        self.signal_.restart();
    }
    if (self.timer_ != nullptr) {
        timespec period = {};
        period.tv_nsec = state == PW_STREAM_STATE_STREAMING
                             ? 1'000'000'000L * driverQuantum / self.options_.rate
                             : 0;
        pw_loop_update_timer(pw_main_loop_get_loop(self.loop_), self.timer_, &period, &period,
                             false);
    }
}

void Source::onParamChanged(void* data, std::uint32_t id, const spa_pod* param) {
    spa_audio_info_raw info = {};
    if (id == SPA_PARAM_Format && param != nullptr &&
        spa_format_audio_raw_parse(param, &info) >= 0) {
        static_cast<Source*>(data)->signal_.setRate(static_cast<int>(info.rate));
    }
}

void Source::onAreaChanged(void* data, std::uint32_t id, void* area, std::uint32_t) {
    if (id == SPA_IO_Position) {
        static_cast<Source*>(data)->position_ = static_cast<const spa_io_position*>(area);
    }
}

void Source::onProcess(void* data) {
    auto& self = *static_cast<Source*>(data);
    if (self.position_ != nullptr) {
        self.signal_.setClock(self.position_->clock.position);
    }
    pw_buffer* buffer = pw_stream_dequeue_buffer(self.stream_);
    if (buffer == nullptr) {
        return;
    }
    spa_buffer& planes = *buffer->buffer;
    auto frames = static_cast<std::uint32_t>(planes.datas[0].maxsize / sizeof(float));
    const auto wanted = self.isDriver() ? std::uint64_t{driverQuantum} : buffer->requested;
    if (wanted > 0 && wanted < frames) {
        frames = static_cast<std::uint32_t>(wanted);
    }
    // A line on a pipe now and then may wait, but nothing measured here waits for it.
    if (self.signal_.beginsPulse() && self.position_ != nullptr) {
        dprintf(STDOUT_FILENO, "pulse %llu\n",
                static_cast<unsigned long long>(self.position_->clock.nsec));
    }
    for (std::uint32_t channel = 0; channel < planes.n_datas; ++channel) {
        spa_data& plane = planes.datas[channel];
        self.signal_.fill(static_cast<int>(channel), static_cast<float*>(plane.data), frames);
        plane.chunk->offset = 0;
        plane.chunk->stride = sizeof(float);
        plane.chunk->size = frames * static_cast<std::uint32_t>(sizeof(float));
    }
    self.signal_.advance(frames);
    pw_stream_queue_buffer(self.stream_, buffer);
}

void Source::onTimer(void* data, std::uint64_t) {
    auto& self = *static_cast<Source*>(data);
    if (self.cyclesLeft_ > 0) {
        --self.cyclesLeft_;
        pw_stream_trigger_process(self.stream_);
    }
}

void quit(void* data, int) {
    pw_main_loop_quit(static_cast<pw_main_loop*>(data));
}

int run(const Options& options) {
    // A device's turn is real-time work, where the user may have that.
    setenv("PIPEWIRE_CONFIG_NAME", "client-rt.conf", 0);
    pw_init(nullptr, nullptr);
    pw_main_loop* loop = pw_main_loop_new(nullptr);
    pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGTERM, quit, loop);
    pw_loop_add_signal(pw_main_loop_get_loop(loop), SIGINT, quit, loop);
    int status = 0;
    {
        Source source(options, loop);
        if (source.open()) {
            pw_main_loop_run(loop);
        } else {
            std::fputs("tarvane-tone-source: no audio server\n", stderr);
            status = 1;
        }
    }
    pw_main_loop_destroy(loop);
    pw_deinit();
    return status;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const std::vector<std::string> texts(arguments + 1, arguments + argumentCount);
    if (!texts.empty() && (texts[0] == "--help" || texts[0] == "-h")) {
        std::fputs(usage, stdout);
        return 0;
    }
    try {
        return run(parse(texts));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tarvane-tone-source: %s\n%s", error.what(), usage);
        return 2;
    }
}
