#include "plugin/ReconnectGate.h"

namespace {

std::mutex gateMutex;
ReconnectGate::Generation lastGeneration = 0;  // guarded by gateMutex
ReconnectGate::Generation openGeneration = 0;  // guarded by gateMutex; 0 = closed

}  // namespace

ReconnectGate::Generation ReconnectGate::open() {
    std::lock_guard<std::mutex> guard(gateMutex);
    openGeneration = ++lastGeneration;
    return openGeneration;
}

void ReconnectGate::close(Generation generation) {
    std::lock_guard<std::mutex> guard(gateMutex);
    if (openGeneration == generation) {
        openGeneration = 0;
    }
}

ReconnectGate::Pass::Pass(Generation generation)
    : hold(gateMutex), allowed(generation != 0 && openGeneration == generation) {}
