#include "CyclePhase.h"

#include <memory>

#include "PluginCycle.h"
#include "ResidentMemory.h"
#include "hostharness/PluginLibrary.h"

namespace colloqvalidate {

namespace {

std::string figuresOf(const CycleFigures& figures, int64_t rssBaseline, int64_t rssLast) {
    std::string text = std::to_string(figures.completed) + " initialize/uninitialize cycles, max uninitialize " +
                       std::to_string(figures.maxUninitialize.count()) + " ms, threads " +
                       std::to_string(figures.threadsBeforeFirst) + " before / " +
                       std::to_string(figures.threadsAfterLast) + " after" +
                       (figures.pipeReceiverStayed ? " (hub pipe receiver kept)" : "");
    if (rssBaseline >= 0 && rssLast >= 0) {
        text += ", RSS " + std::to_string(rssBaseline) + " KiB at cycle " + std::to_string(kMemoryBaselineCycle) +
                " / " + std::to_string(rssLast) + " KiB at cycle " + std::to_string(figures.completed) + " (" +
                (rssLast >= rssBaseline ? "+" : "") + std::to_string(rssLast - rssBaseline) + " KiB)";
    } else {
        text += ", RSS not compared (fewer than " + std::to_string(kMemoryBaselineCycle + 1) + " cycles)";
    }
    return text;
}

}  // namespace

PhaseReport runCyclePhase(const CyclePhaseSettings& settings) {
    PhaseReport report;
    report.phase = "cycles";
    auto plugin = std::make_unique<hostharness::PluginLibrary>();
    if (plugin->load(settings.pluginPath) != hostharness::HarnessStatus::Ok) {
        report.figures = "0 cycles";
        report.failure = CheckFailure{"the plug-in loads", settings.pluginPath + ": " + plugin->lastError()};
        return report;
    }
    PluginCycle cycle(settings.limits);
    CycleFigures figures;
    int64_t rssBaseline = -1;
    int64_t rssLast = -1;
    for (int i = 0; i < settings.cycles && !report.failure; ++i) {
        report.failure = cycle.run(*plugin, &figures, &report.pluginHung);
        if (figures.completed == kMemoryBaselineCycle) {
            rssBaseline = residentKib();
        }
    }
    if (report.pluginHung) {
        // A thread is still inside the library: it is neither unloaded nor destroyed.
        static_cast<void>(plugin.release());
    } else {
        plugin->unload();
    }
    if (!report.failure && rssBaseline >= 0 && figures.completed > kMemoryBaselineCycle) {
        rssLast = residentKib();
        if (rssLast - rssBaseline > settings.rssSlackKib) {
            report.failure = CheckFailure{
                "resident memory does not grow",
                "RSS grew from " + std::to_string(rssBaseline) + " KiB after cycle " +
                    std::to_string(kMemoryBaselineCycle) + " to " + std::to_string(rssLast) + " KiB after cycle " +
                    std::to_string(figures.completed) + ", more than the allowed " +
                    std::to_string(settings.rssSlackKib) + " KiB"};
        }
    }
    report.figures = figuresOf(figures, rssBaseline, rssLast);
    return report;
}

}  // namespace colloqvalidate
