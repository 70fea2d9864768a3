// The singleton's life: creation, start, the start-up thread that chooses between the direct
// handler and the hub proxy, stop and release.
#include "plugin/BQLColloqPlugin.h"

#include <new>

#include "handlers/BQLColloqVexil.h"
#include "hubproxy/BQLColloqVexilProxy.h"
#include "platform/HubPresence.h"
#include "platform/MainQueue.h"
#include "platform/ThreadName.h"
#include "plugin/ReconnectGate.h"

std::atomic<BQLColloqPlugin*> BQLColloqPlugin::pInstance{nullptr};
boost::once_flag BQLColloqPlugin::flagSingleton = BOOST_ONCE_INIT;
std::atomic<bool> BQLColloqPlugin::isPluginActive{false};

namespace {

// Time between two looks for the hub process.
constexpr auto kHubCheckInterval = boost::chrono::seconds(2);

}  // namespace

BQLColloqPlugin* BQLColloqPlugin::getInstance() {
    boost::call_once(flagSingleton, &BQLColloqPlugin::createInstance);
    return pInstance.load();
}

void BQLColloqPlugin::createInstance() { pInstance.store(new BQLColloqPlugin()); }

BQLColloqPlugin::BQLColloqPlugin() { InitializeLog(); }

int BQLColloqPlugin::Start(accessoryAPIEntryPoint_t entry) {
    selector = std::make_shared<BQLHandlerSelector>();
    selector->setHandler(BQLColloqVexil::getInstance());
    running.exchange(true);
    reconnectGeneration.store(ReconnectGate::open());

    // A second Start without Stop replaces the thread object; the thread it held keeps
    // running until Stop, which joins it too.
    if (startupThread.joinable()) {
        previousStartupThreads.push_back(std::move(startupThread));
    }
    startupThread = boost::thread(&BQLColloqPlugin::CheckForVexilInstance, this, selector, entry);

    initializeColloqPoints(entry);
    return 0;
}

void BQLColloqPlugin::CheckForVexilInstance(std::shared_ptr<BQLHandlerSelector> activeSelector,
                                            accessoryAPIEntryPoint_t /*entry*/) {
    platform::nameCurrentThread("bql-startup");
    if (!running.load()) {
        return;
    }
    bool hubSeenBefore = false;
    do {
        const bool hubRunning = platform::isHubProcessRunning();
        if (!hubRunning) {
            if (hubSeenBefore) {
                scheduleHubReconnect(activeSelector);
            }
            activeSelector->setHandler(BQLColloqVexil::getInstance());
        } else {
            BQLColloqVexilProxy::getInstance()->OpenPipe();
            activeSelector->setHandler(BQLColloqVexilProxy::getInstance());
        }
        hubSeenBefore = hubRunning;
        waitForNextHubCheck();
    } while (running.load());
}

void BQLColloqPlugin::waitForNextHubCheck() {
    boost::unique_lock<boost::mutex> guard(hubCheckMutex);
    hubCheckWake.wait_for(guard, kHubCheckInterval, [this] { return !running.load(); });
}

void BQLColloqPlugin::scheduleHubReconnect(std::shared_ptr<BQLHandlerSelector> activeSelector) {
    BQLEventQueue* queue = &eventQueue;
    const ReconnectGate::Generation generation = reconnectGeneration.load();
    // The work runs later on the main queue: it reconnects whatever handler is current then,
    // unless this start has ended in the meantime; it never touches this object.
    platform::dispatchOnMainQueue([generation, activeSelector, queue] {
        ReconnectGate::Pass pass(generation);
        if (!pass) {
            return;
        }
        activeSelector->disconnectFromVexil();
        activeSelector->connectToVexil(queue);
    });
}

int BQLColloqPlugin::Stop() {
    running.exchange(false);
    {
        boost::lock_guard<boost::mutex> guard(hubCheckMutex);
    }
    hubCheckWake.notify_all();
    // No reconnect may start after this point, and one in progress is waited for.
    ReconnectGate::close(reconnectGeneration.load());

    unInitializeColloqPoints();

    for (boost::thread& previous : previousStartupThreads) {
        previous.join();
    }
    previousStartupThreads.clear();
    if (startupThread.joinable()) {
        startupThread.join();  // throws boost::thread_resource_error when called from itself
    }
    platform::drainMainQueue();
    getInstance()->Release();
    return 0;
}

void BQLColloqPlugin::Release() {
    delete this;
    pInstance.store(nullptr);
}

BQLColloqPlugin::~BQLColloqPlugin() {
    if (eventQueue.Size() != 0) {
        eventQueue.Clear();
    }
    if (callQueue.Size() != 0) {
        callQueue.Clear();
    }
    // A fresh once-flag lets a later initialize build a new instance in this process. Braces:
    // boost's once_flag may be a plain aggregate, which default-initialisation leaves as it was.
    new (&flagSingleton) boost::once_flag{};
    pInstance.store(nullptr);
}
