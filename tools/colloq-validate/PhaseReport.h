// What a phase found: its figures for the one line it prints, and the check that failed, if any.
#pragma once

#include <optional>
#include <string>

namespace colloqvalidate {

struct CheckFailure {
    std::string check;   // the check by name, e.g. "uninitialize returns within the limit"
    std::string detail;  // what was seen
};

struct PhaseReport {
    std::string phase;    // "cycles", "dlopen", "storm"
    std::string figures;  // readable figures of the run
    std::optional<CheckFailure> failure;
    // uninitialize never returned: a thread is still inside the plug-in, so the process must
    // end without unloading it or running its destructors.
    bool pluginHung = false;

    bool passed() const { return !failure; }
};

// "cycles: <figures>: ok", or "... : FAILED" when a check failed.
std::string phaseLine(const PhaseReport& report);
// "FAILED check '<check>' in phase <phase>: <detail>".
std::string failureLine(const PhaseReport& report);

}  // namespace colloqvalidate
