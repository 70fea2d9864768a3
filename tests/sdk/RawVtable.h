// Calls a virtual function by its position in the object's virtual table, bypassing the C++
// type system, the way a binary client of an interface does.
//
// ABI assumption (Itanium C++ ABI, used by g++ and clang on Linux and macOS): a polymorphic
// object without other bases starts with a pointer to its virtual table; the table holds one entry
// per virtual function in declaration order (a virtual destructor takes two consecutive entries:
// the complete-object destructor, then the deleting destructor); each entry is an ordinary function
// that takes the object pointer as its first argument, followed by the declared arguments.
#pragma once

#include <cstddef>

namespace sdktest {

// The generic entry type; GCC and clang let any function pointer pass through it unwarned.
using VtableEntry = void (*)();

template <typename Object>
VtableEntry vtableEntry(const Object* object, std::size_t index) {
    const VtableEntry* const* vptr = reinterpret_cast<const VtableEntry* const*>(object);
    return (*vptr)[index];
}

template <typename Signature>
struct VirtualSlot;

template <typename Result, typename... Args>
struct VirtualSlot<Result(Args...)> {
    template <typename Object>
    static Result call(Object* object, std::size_t index, Args... args) {
        using Entry = Result (*)(Object*, Args...);
        const auto entry = reinterpret_cast<Entry>(vtableEntry(object, index));
        return entry(object, args...);
    }
};

// The runtime's interfaces number their operations from 1 ("position N"); tables count from 0.
constexpr std::size_t indexOfPosition(std::size_t position) { return position - 1; }

// callSlot<int32_t(int32_t)>(session, 2, 7) calls the third entry of session's table with 7.
template <typename Signature, typename Object, typename... Given>
auto callSlot(Object* object, std::size_t index, Given&&... given) {
    return VirtualSlot<Signature>::call(object, index, static_cast<Given&&>(given)...);
}

}  // namespace sdktest
