#include "LockedListBaseline.h"

#include <condition_variable>
#include <list>
#include <system_error>
#include <thread>
#include <vector>

#include "Clock.h"
#include "StartGate.h"
#include "bqlcommon/Mutex.h"
#include "platform/ThreadName.h"

namespace bench {

namespace {

struct LockedList {
    bql::Mutex mutex;
    std::condition_variable wake;
    std::list<int64_t> items BQL_GUARDED_BY(mutex);

    void push(int64_t item) {
        {
            bql::MutexLock lock(mutex);
            items.push_back(item);
        }
        wake.notify_one();
    }

    int64_t pop() {
        bql::MutexLock lock(mutex);
        while (items.empty()) {
            lock.wait(wake);
        }
        const int64_t item = items.front();
        items.pop_front();
        return item;
    }
};

}  // namespace

double lockedListEventsPerSecond(int producers, int64_t eventsPerProducer) {
    LockedList list;
    StartGate gate;
    const int64_t total = producers * eventsPerProducer;
    std::vector<std::thread> threads;
    int64_t begin = 0;
    int64_t end = 0;
    try {
        threads.emplace_back([&] {
            platform::nameCurrentThread("bench-consumer");
            gate.waitOpen();
            for (int64_t taken = 0; taken < total; ++taken) {
                list.pop();
            }
            end = nowNs();
        });
        for (int p = 0; p < producers; ++p) {
            threads.emplace_back([&, p] {
                platform::nameCurrentThread("bench-producer");
                gate.waitOpen();
                for (int64_t i = 0; i < eventsPerProducer; ++i) {
                    list.push(p * eventsPerProducer + i);
                }
            });
        }
    } catch (const std::system_error&) {
        gate.open();
        // A consumer that started waits for events that will never come: feed it what it lacks.
        if (!threads.empty()) {
            for (int64_t i = 0; i < total; ++i) {
                list.push(i);
            }
        }
        for (auto& thread : threads) {
            thread.join();
        }
        return 0;
    }
    begin = nowNs();
    gate.open();
    for (auto& thread : threads) {
        thread.join();
    }
    return static_cast<double>(total) * 1e9 / static_cast<double>(end - begin);
}

}  // namespace bench
