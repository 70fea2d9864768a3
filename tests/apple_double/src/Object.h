// The objects of the CoreFoundation double. Their reference counts live in one registry, so a
// release of anything that is not a live object (a double release, a stray pointer) is caught as
// a misuse instead of freeing memory twice.
#pragma once

#include <cstddef>
#include <memory>

namespace appledouble {

class Object {
public:
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

protected:
    Object() = default;
};

// Registers `object` with one reference, owned by the caller, and returns its handle.
void* adopt(std::unique_ptr<Object> object);
// Registers an object that lives as long as the process; releasing it does nothing.
void* adoptConstant(Object& constant);
// Adds a reference to a live object; false when `handle` is none.
bool retain(const void* handle);
// Drops a reference; the last one destroys the object, outside the registry's lock. False when
// `handle` is no live object.
bool release(const void* handle);
// The live object behind `handle`, or null.
Object* find(const void* handle);
// Live objects, constants not counted.
std::size_t liveCount();

// The live object behind `handle` when it is of kind `Kind`, else null.
template <class Kind>
Kind* lookUp(const void* handle) {
    return dynamic_cast<Kind*>(find(handle));
}

}  // namespace appledouble
