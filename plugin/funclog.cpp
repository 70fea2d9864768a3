#include "plugin/funclog.h"

#include <cstdio>
#include <exception>

#include "bqlutil/LogWriter.h"

funclog::funclog(const char* functionName)
    : name(functionName), exceptionsAtEntry(std::uncaught_exceptions()) {
    LogWriter_debug("entry", name, "<>");
}

funclog::~funclog() {
    char buffer[512];
    const bool unwinding = std::uncaught_exceptions() > exceptionsAtEntry;
    std::snprintf(buffer, sizeof buffer, "exit %s", unwinding ? "on exception" : "");
    LogWriter_debug(buffer, name, "<>");
}
