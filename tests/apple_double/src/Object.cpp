#include "Object.h"

#include <mutex>
#include <unordered_map>
#include <utility>

#include "appledouble/AppleDouble.h"
#include "bqlcommon/Mutex.h"

namespace appledouble {
namespace {

struct Entry {
    std::unique_ptr<Object> owned;  // empty for constants
    Object* object;
    long references;
};

class Registry {
public:
    void* add(std::unique_ptr<Object> owned) {
        Object* object = owned.get();
        bql::MutexLock guard(lock);
        entries.emplace(object, Entry{std::move(owned), object, 1});
        return object;
    }

    void* addConstant(Object& constant) {
        bql::MutexLock guard(lock);
        entries.emplace(&constant, Entry{nullptr, &constant, 1});
        return &constant;
    }

    bool retain(const void* handle) {
        bql::MutexLock guard(lock);
        const auto found = entries.find(handle);
        if (found == entries.end()) {
            return false;
        }
        if (found->second.owned) {
            ++found->second.references;
        }
        return true;
    }

    bool release(const void* handle) {
        std::unique_ptr<Object> last;
        {
            bql::MutexLock guard(lock);
            const auto found = entries.find(handle);
            if (found == entries.end()) {
                return false;
            }
            if (!found->second.owned || --found->second.references > 0) {
                return true;
            }
            last = std::move(found->second.owned);
            entries.erase(found);
        }
        // A destructor may release further objects, so it runs without the lock.
        last.reset();
        return true;
    }

    Object* find(const void* handle) {
        bql::MutexLock guard(lock);
        const auto found = entries.find(handle);
        return found == entries.end() ? nullptr : found->second.object;
    }

    std::size_t liveCount() {
        bql::MutexLock guard(lock);
        std::size_t count = 0;
        for (const auto& entry : entries) {
            count += entry.second.owned ? 1 : 0;
        }
        return count;
    }

private:
    bql::Mutex lock;
    std::unordered_map<const void*, Entry> entries BQL_GUARDED_BY(lock);
};

// Never destroyed: objects may be released while the process exits.
Registry& registry() {
    static Registry* const instance = new Registry();
    return *instance;
}

}  // namespace

void* adopt(std::unique_ptr<Object> object) { return registry().add(std::move(object)); }

void* adoptConstant(Object& constant) { return registry().addConstant(constant); }

bool retain(const void* handle) { return registry().retain(handle); }

bool release(const void* handle) { return registry().release(handle); }

Object* find(const void* handle) { return registry().find(handle); }

std::size_t liveCount() { return registry().liveCount(); }

std::size_t liveObjectCount() { return liveCount(); }

}  // namespace appledouble
