#include "FaultInjector.h"

#include <algorithm>
#include <string_view>
#include <iterator>

namespace vexil {

namespace {

constexpr const char* kNames[] = {
    "getSessionManager",
    "getSessionManagerInt",
    "getDeviceManager",
    "ISessionManager::unregisterSession",
    "ISessionManager::setPluginStatus",
    "ISessionManager::registerCallback",
    "ISessionManager::unregisterCallback",
    "ISessionManager::getSoftphoneDefaults",
    "ISoftphoneDefaults::setDefaultSoftphone",
    "ISessionManagerInt::registerSession",
    "ISessionManagerInt::getDeviceEnumerator",
    "ISessionManagerInt::refreshDevices",
    "ISessionManagerInt::setActiveDevice",
    "ISession::getPluginId",
    "ISession::registerCallback",
    "ISession::unregisterCallback",
    "ISession::getCallCommand",
    "ISession::getActiveDevice",
    "ICallCommand::incomingCall",
    "ICallCommand::outgoingCall",
    "ICallCommand::terminateCall",
    "ICallCommand::answeredCall",
    "ICallCommand::holdCall",
    "ICallCommand::resumeCall",
    "ICallCommand::insertCall",
    "ICallCommand::setMute",
    "IDevice::getDevicePath",
    "IDevice::getProductName",
    "IDevice::getHostCommand",
    "IDeviceManager::getDevices",
};

}  // namespace

std::size_t FaultInjector::nameCount() {
    return std::size(kNames);
}

const char* FaultInjector::nameAt(std::size_t index) {
    return index < std::size(kNames) ? kNames[index] : nullptr;
}

bool FaultInjector::isKnown(const std::string& name) {
    return std::any_of(std::begin(kNames), std::end(kNames),
                       [&name](const char* known) { return name == known; });
}

void FaultInjector::arm(const std::string& name, int32_t status, int32_t remaining) {
    bql::MutexLock lock(mutex_);
    faults_[name] = Fault{status, remaining};
}

std::optional<int32_t> FaultInjector::take(const char* name) {
    bql::MutexLock lock(mutex_);
    const auto found = faults_.find(std::string_view(name));
    if (found == faults_.end()) {
        return std::nullopt;
    }
    const int32_t status = found->second.status;
    if (found->second.remaining != kAlways && --found->second.remaining == 0) {
        faults_.erase(found);
    }
    return status;
}

void FaultInjector::clear() {
    bql::MutexLock lock(mutex_);
    faults_.clear();
}

}  // namespace vexil
