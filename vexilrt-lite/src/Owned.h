// A reference the runtime holds on one of its own released-by-Release() objects until it
// hands it out, so that an early return gives it back.
#pragma once

#include <memory>

namespace vexil {

struct ReleaseReference {
    template <class Object>
    void operator()(Object* object) const {
        object->Release();
    }
};

template <class Object>
using Owned = std::unique_ptr<Object, ReleaseReference>;

}  // namespace vexil
