#include "Report.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <fstream>
#include <string>

namespace bench {

namespace {

constexpr double kMiB = 1024.0 * 1024.0;
// The targets the figures are held against.
constexpr double kP50Limit = 3.0;
constexpr double kP99Limit = 10.0;
constexpr double kThroughputShare = 0.5;
constexpr double kIdleCorePercent = 1.0;
constexpr double kMemoryGrowthMiB = 1.0;

__attribute__((format(printf, 1, 2))) std::string format(const char* pattern, ...) {
    char text[200];
    va_list arguments;
    va_start(arguments, pattern);
    std::vsnprintf(text, sizeof text, pattern, arguments);
    va_end(arguments);
    return text;
}

double ratio(double measured, double bound) { return bound > 0 ? measured / bound : 0; }

const char* verdict(bool met, const Options& options) {
    if (options.smoke) {
        return "(smoke: no target)";
    }
    return met ? "met" : "MISSED";
}

std::string jsonText(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c;
    }
    return quoted + "\"";
}

std::string jsonSummary(const LatencySummary& s) {
    return "{\"count\":" + std::to_string(s.count) + ",\"p50_us\":" + std::to_string(s.p50Us) +
           ",\"p99_us\":" + std::to_string(s.p99Us) + ",\"p999_us\":" + std::to_string(s.p999Us) +
           ",\"max_us\":" + std::to_string(s.maxUs) + "}";
}

double idlePercent(double seconds, double window) { return window > 0 ? 100.0 * seconds / window : 0; }

// No target: the figures say how long a hostile name keeps the client's thread.
void printDeviceNames(const DeviceNameFigures& names, std::ostream& out) {
    out << "\nDevice-name callback on a 512 KiB-stack thread (onActiveDeviceChanged, fire to return;\n"
           "microseconds; "
        << names.rounds << " rounds of every hostile name, the headset chosen again after each)\n";
    if (!names.problem.empty()) {
        out << "  NOT VALID: " << names.problem << "\n";
        return;
    }
    const LatencySummary& b = names.lowerBound;
    out << "  lower bound  n=" << b.count << "  (short valid name of a device not listed: \""
        << names.boundIdentifier << "\")\n"
        << format("               median %9.1f  p99 %9.1f  worst %9.1f", b.p50Us, b.p99Us, b.maxUs) << "\n"
        << format("  %-28s %5s %7s %11s %11s  %s", "group", "names", "samples", "median", "worst", "worst name")
        << "\n";
    for (const NameGroupFigures& g : names.groups) {
        out << format("  %-28s %5zu %7zu %11.1f %11.1f  ", g.group.c_str(), g.names, g.times.count, g.times.p50Us,
                      g.times.maxUs)
            << g.worstLabel << "\n";
    }
    out << format("  worst over every hostile name: %.1f us (%.1f ms), ", names.worstUs, names.worstUs / 1000)
        << names.worstLabel << format("; %.1fx the bound's median (no target)", ratio(names.worstUs, b.p50Us))
        << "\n";
}

}  // namespace

void printReport(const Results& results, const Options& options, std::ostream& out) {
    out << "\nLatency paths (microseconds; ratio = path / lower bound measured beside it)\n";
    for (const PathFigures& path : results.paths) {
        out << "\n  " << path.path << "\n";
        if (!path.problem.empty()) {
            out << "    NOT VALID: " << path.problem << "\n";
            continue;
        }
        const LatencySummary& m = path.measured;
        const LatencySummary& b = path.lowerBound;
        out << format("    path         n=%.0f  p50 %9.1f  p99 %9.1f  p99.9 %9.1f", static_cast<double>(m.count),
                      m.p50Us, m.p99Us, m.p999Us)
            << "\n"
            << "    lower bound  n=" << b.count << "  (" << path.bound << ")\n"
            << format("                          p50 %9.1f  p99 %9.1f  p99.9 %9.1f", b.p50Us, b.p99Us, b.p999Us)
            << "\n";
        const double r50 = ratio(m.p50Us, b.p50Us);
        const double r99 = ratio(m.p99Us, b.p99Us);
        out << format("    ratio        p50 %.2fx (target <= 3x)  p99 %.2fx (target <= 10x)  p99.9 %.2fx", r50, r99,
                      ratio(m.p999Us, b.p999Us))
            << "  " << verdict(r50 <= kP50Limit && r99 <= kP99Limit, options) << "\n";
    }

    if (!results.throughput.empty()) {
        out << "\nEvents per second (plug-in: through to the runtime's commands; bare: locked list, same producers)\n";
        for (const ThroughputFigures& t : results.throughput) {
            out << "  " << t.producers << " client thread(s), " << t.events << " events, ";
            if (t.window > 0) {
                out << "sustained (" << t.window << " calls in flight per thread at most): ";
            } else {
                out << "burst (no limit): ";
            }
            if (!t.problem.empty()) {
                out << "NOT VALID: " << t.problem << "\n";
                continue;
            }
            const double share = ratio(t.sustainedPerSecond, t.barePerSecond);
            out << format("plug-in %.0f/s, bare %.0f/s, ratio %.4f", t.sustainedPerSecond, t.barePerSecond, share);
            if (t.window > 0) {
                out << " (target >= 0.5) " << verdict(share >= kThroughputShare, options);
            }
            out << "\n";
        }
    }

    if (results.idle.measured) {
        const IdleFigures& idle = results.idle;
        const double self = idlePercent(idle.selfSeconds, idle.windowSeconds);
        const double children = idlePercent(idle.childrenSeconds, idle.windowSeconds);
        out << "\nIdle plug-in, headset connected, " << idle.windowSeconds << " s window\n"
            << format("  host process %.3f s CPU (%.3f%% of one core); hub checks' children %.3f s (%.3f%%)",
                      idle.selfSeconds, self, idle.childrenSeconds, children)
            << "\n"
            << format("  total %.3f%% of one core = %.2f s CPU per minute", self + children,
                      (idle.selfSeconds + idle.childrenSeconds) * 60.0 / idle.windowSeconds)
            << " (target < 1%) " << verdict(self + children < kIdleCorePercent, options) << "\n";
        for (const auto& [thread, seconds] : idle.threadSeconds) {
            if (seconds > 0) {
                std::string label = thread;
                label.resize(std::max<std::size_t>(label.size(), 32), ' ');
                out << "    thread " << label << format(" %.3f s", seconds) << "\n";
            }
        }
        if (!idle.problem.empty()) {
            out << "  NOT VALID: " << idle.problem << "\n";
        }
    }

    if (!results.memory.empty()) {
        out << "\nResident memory after full calls (incoming, answered, ended)\n";
        for (const auto& [calls, bytes] : results.memory) {
            out << "  after " << calls << " calls: " << format("%.2f MiB", static_cast<double>(bytes) / kMiB) << "\n";
        }
        if (results.memory.size() >= 3) {
            const double growth =
                static_cast<double>(results.memory[2].second - results.memory[1].second) / kMiB;
            out << "  growth from " << results.memory[1].first << " to " << results.memory[2].first
                << format(" calls: %.3f MiB", growth) << " (target <= 1 MiB) "
                << verdict(growth <= kMemoryGrowthMiB, options) << "\n";
        }
        if (!results.memoryProblem.empty()) {
            out << "  NOT VALID: " << results.memoryProblem << "\n";
        }
    }

    if (results.lifecycle.measured || !results.lifecycle.problem.empty()) {
        out << "\nLifecycle (milliseconds, " << results.lifecycle.connect.count << " rounds)\n";
        if (!results.lifecycle.problem.empty()) {
            out << "  NOT VALID: " << results.lifecycle.problem << "\n";
        } else {
            const LifecycleFigures& l = results.lifecycle;
            out << format("  initialize -> connected  p50 %.2f  max %.2f", l.connect.p50Us / 1000, l.connect.maxUs / 1000)
                << "\n"
                << format("  uninitialize             p50 %.2f  max %.2f", l.uninitialize.p50Us / 1000,
                          l.uninitialize.maxUs / 1000)
                << "\n";
        }
    }

    if (results.deviceNames.measured) {
        printDeviceNames(results.deviceNames, out);
    }
}

bool writeJson(const Results& results, const Options& options, const std::string& path) {
    std::ofstream out(path);
    if (!out) {
        return false;
    }
    out << "{\"smoke\":" << (options.smoke ? "true" : "false") << ",\"paths\":[";
    for (std::size_t i = 0; i < results.paths.size(); ++i) {
        const PathFigures& p = results.paths[i];
        out << (i ? "," : "") << "{\"path\":" << jsonText(p.path) << ",\"bound\":" << jsonText(p.bound)
            << ",\"measured\":" << jsonSummary(p.measured) << ",\"lower_bound\":" << jsonSummary(p.lowerBound)
            << ",\"problem\":" << jsonText(p.problem) << "}";
    }
    out << "],\"throughput\":[";
    for (std::size_t i = 0; i < results.throughput.size(); ++i) {
        const ThroughputFigures& t = results.throughput[i];
        out << (i ? "," : "") << "{\"producers\":" << t.producers << ",\"events\":" << t.events
            << ",\"window\":" << t.window << ",\"per_s\":" << t.sustainedPerSecond
            << ",\"bare_per_s\":" << t.barePerSecond << ",\"problem\":" << jsonText(t.problem) << "}";
    }
    out << "],\"idle\":{\"window_s\":" << results.idle.windowSeconds << ",\"self_cpu_s\":" << results.idle.selfSeconds
        << ",\"children_cpu_s\":" << results.idle.childrenSeconds << ",\"problem\":" << jsonText(results.idle.problem)
        << "},\"memory\":[";
    for (std::size_t i = 0; i < results.memory.size(); ++i) {
        out << (i ? "," : "") << "{\"calls\":" << results.memory[i].first
            << ",\"resident_bytes\":" << results.memory[i].second << "}";
    }
    out << "],\"lifecycle\":{\"connect\":" << jsonSummary(results.lifecycle.connect)
        << ",\"uninitialize\":" << jsonSummary(results.lifecycle.uninitialize)
        << ",\"problem\":" << jsonText(results.lifecycle.problem) << "}";
    const DeviceNameFigures& names = results.deviceNames;
    if (names.measured) {
        out << ",\"device_names\":{\"rounds\":" << names.rounds << ",\"bound\":" << jsonText(names.boundIdentifier)
            << ",\"lower_bound\":" << jsonSummary(names.lowerBound) << ",\"groups\":[";
        for (std::size_t i = 0; i < names.groups.size(); ++i) {
            const NameGroupFigures& g = names.groups[i];
            out << (i ? "," : "") << "{\"group\":" << jsonText(g.group) << ",\"names\":" << g.names
                << ",\"times\":" << jsonSummary(g.times) << ",\"worst_name\":" << jsonText(g.worstLabel) << "}";
        }
        out << "],\"worst_us\":" << std::to_string(names.worstUs) << ",\"worst_name\":" << jsonText(names.worstLabel)
            << ",\"problem\":" << jsonText(names.problem) << "}";
    }
    out << "}\n";
    return static_cast<bool>(out);
}

bool allValid(const Results& results) {
    for (const PathFigures& path : results.paths) {
        if (!path.problem.empty()) {
            return false;
        }
    }
    for (const ThroughputFigures& t : results.throughput) {
        if (!t.problem.empty()) {
            return false;
        }
    }
    return results.idle.problem.empty() && results.memoryProblem.empty() && results.lifecycle.problem.empty() &&
           results.deviceNames.problem.empty();
}

}  // namespace bench
