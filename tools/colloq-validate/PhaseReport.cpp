#include "PhaseReport.h"

namespace colloqvalidate {

std::string phaseLine(const PhaseReport& report) {
    return report.phase + ": " + report.figures + (report.passed() ? ": ok" : ": FAILED");
}

std::string failureLine(const PhaseReport& report) {
    if (report.passed()) {
        return "";
    }
    return "FAILED check '" + report.failure->check + "' in phase " + report.phase + ": " + report.failure->detail;
}

}  // namespace colloqvalidate
