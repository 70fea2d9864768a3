#include "ValidateOptions.h"

#include <charconv>
#include <limits>

namespace colloqvalidate {

namespace {

template <typename Number>
bool readNumber(const std::string& text, Number min, Number max, Number* out) {
    Number value{};
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value);
    if (error != std::errc() || rest != end || value < min || value > max) {
        return false;
    }
    *out = value;
    return true;
}

}  // namespace

std::string usageText() {
    return "usage: colloq-validate [options]\n"
           "Loads a plug-in of the Colloq accessory interface as the client does and checks that it\n"
           "starts, stops and unloads cleanly, also under a storm of callbacks and headset events,\n"
           "and that hostile device names neither crash, stall nor disable it.\n"
           "  --plugin PATH          the plug-in library (default: this build's libBQLColloqPlugin)\n"
           "  --hub-sim PATH         the hub simulator (default: this build's bql-hub-sim)\n"
           "  --cycles N             initialize/uninitialize cycles (default 200; at least 50 for the\n"
           "                         memory check)\n"
           "  --dlopen-cycles N      dlopen/initialize/uninitialize/dlclose cycles (default 50)\n"
           "  --storm-seconds N      length of the storm, 0 leaves it out (default 20)\n"
           "  --seed N               seed of the storm's random choices (default 1)\n"
           "  --no-hub               do not start and stop the hub simulator during the storm\n"
           "  --client-threads N     client threads firing callbacks in the storm (default 8)\n"
           "  --uninitialize-limit-ms N  longest allowed uninitialize (default 3000)\n"
           "  --no-names             leave out the hostile device names\n"
           "  --name-limit-ms N      longest allowed onActiveDeviceChanged with a hostile or valid\n"
           "                         device name (default 2000)\n"
           "  --host-thread NAME     a thread of the host's environment, such as the one serving a\n"
           "                         main dispatch queue, that may outlive uninitialize (repeatable)\n"
           "  --rss-slack-kib N      allowed resident memory difference between the 50th and the\n"
           "                         last cycle (default 1024)\n"
           "  --drain-seconds N      longest wait for the worker after the storm (default 60)\n"
           "  --help                 this text\n"
           "Exit status: 0 when every check passed, 1 when one failed, 2 for bad options.\n";
}

std::string parseOptions(const std::vector<std::string>& arguments, ValidateOptions* options) {
    constexpr int kMaxInt = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        if (name == "--help" || name == "-h") {
            options->help = true;
            continue;
        }
        if (name == "--no-hub") {
            options->hub = false;
            continue;
        }
        if (name == "--no-names") {
            options->names = false;
            continue;
        }
        if (i + 1 >= arguments.size()) {
            return name.rfind("--", 0) == 0 ? name + " needs a value" : "unknown argument " + name;
        }
        const std::string& value = arguments[i + 1];
        bool good = true;
        if (name == "--plugin") {
            good = !value.empty();
            options->pluginPath = value;
        } else if (name == "--hub-sim") {
            good = !value.empty();
            options->hubSimulatorPath = value;
        } else if (name == "--cycles") {
            good = readNumber(value, 0, kMaxInt, &options->cycles);
        } else if (name == "--dlopen-cycles") {
            good = readNumber(value, 0, kMaxInt, &options->dlopenCycles);
        } else if (name == "--storm-seconds") {
            good = readNumber(value, 0, 24 * 3600, &options->stormSeconds);
        } else if (name == "--seed") {
            good = readNumber(value, 0u, std::numeric_limits<uint32_t>::max(), &options->seed);
        } else if (name == "--client-threads") {
            good = readNumber(value, 1, 256, &options->clientThreads);
        } else if (name == "--uninitialize-limit-ms") {
            good = readNumber(value, 1, 3600 * 1000, &options->uninitializeLimitMs);
        } else if (name == "--name-limit-ms") {
            good = readNumber(value, 1, 3600 * 1000, &options->nameLimitMs);
        } else if (name == "--host-thread") {
            good = !value.empty();
            options->hostThreads.push_back(value);
        } else if (name == "--rss-slack-kib") {
            good = readNumber(value, int64_t{0}, std::numeric_limits<int64_t>::max(), &options->rssSlackKib);
        } else if (name == "--drain-seconds") {
            good = readNumber(value, 1, 24 * 3600, &options->drainSeconds);
        } else {
            return "unknown option " + name;
        }
        if (!good) {
            return "bad value for " + name + ": \"" + value + "\"";
        }
        ++i;
    }
    return "";
}

}  // namespace colloqvalidate
