#include "DlopenPhase.h"

#include <memory>

#include "PluginCycle.h"
#include "hostharness/PluginLibrary.h"

namespace colloqvalidate {

PhaseReport runDlopenPhase(const DlopenPhaseSettings& settings) {
    PhaseReport report;
    report.phase = "dlopen";
    PluginCycle cycle(settings.limits);
    CycleFigures figures;
    for (int i = 0; i < settings.cycles && !report.failure; ++i) {
        auto plugin = std::make_unique<hostharness::PluginLibrary>();
        if (plugin->load(settings.pluginPath) != hostharness::HarnessStatus::Ok) {
            report.failure = CheckFailure{"the plug-in loads", settings.pluginPath + ": " + plugin->lastError() +
                                                                   " (cycle " + std::to_string(i + 1) + ")"};
            break;
        }
        report.failure = cycle.run(*plugin, &figures, &report.pluginHung);
        if (report.pluginHung) {
            static_cast<void>(plugin.release());
            break;
        }
        if (plugin->unload() != hostharness::HarnessStatus::Ok && !report.failure) {
            report.failure = CheckFailure{"the plug-in unloads", "dlclose failed (cycle " + std::to_string(i + 1) + ")"};
        }
    }
    report.figures = std::to_string(figures.completed) +
                     " dlopen/initialize/uninitialize/dlclose cycles, max uninitialize " +
                     std::to_string(figures.maxUninitialize.count()) + " ms, threads " +
                     std::to_string(figures.threadsBeforeFirst) + " before / " +
                     std::to_string(figures.threadsAfterLast) + " after" +
                     (figures.pipeReceiverStayed ? " (hub pipe receiver kept)" : "");
    return report;
}

}  // namespace colloqvalidate
