// Where the client calls in, nothing may escape back out: a body that throws is logged to the
// local log under the calling function's name, and the caller gets 0 as always.
#pragma once

#include <exception>

#include "bqlutil/LogWriter.h"

template <typename Body>
int runWithoutEscaping(const char* function, Body&& body) {
    try {
        body();
    } catch (const std::exception& error) {
        LogWriter_error(error.what(), function, "<>");
    } catch (...) {
        LogWriter_error("unknown exception", function, "<>");
    }
    return 0;
}
