// Holds one reference on an object that is given back through its own Release(), as the
// runtime's interfaces are, so that every way out of the holder's scope gives it back once.
#pragma once

#include <memory>

namespace bql {

struct CallRelease {
    template <class Object>
    void operator()(Object* object) const {
        object->Release();
    }
};

template <class Object>
using ReleasingPtr = std::unique_ptr<Object, CallRelease>;

}  // namespace bql
