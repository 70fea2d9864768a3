#include "hostharness/HostileDeviceNames.h"

#include <cstddef>
#include <cstdio>

namespace hostharness {

namespace {

constexpr std::size_t KiB = 1024;
constexpr std::size_t MiB = 1024 * KiB;

// `unit` repeated until the next copy would pass `bytes`, then `tail`.
std::string repeated(const std::string& unit, std::size_t bytes, const std::string& tail = std::string()) {
    std::string text;
    text.reserve(bytes + tail.size());
    while (text.size() + unit.size() <= bytes) {
        text += unit;
    }
    return text + tail;
}

// "((...(A)...))" of `bytes` less one: one group per two bytes, each inside the last.
std::string nestedGroups(std::size_t bytes) {
    const std::size_t depth = bytes / 2 - 1;
    return std::string(depth, '(') + "A" + std::string(depth, ')');
}

std::string sizeText(std::size_t bytes) {
    return bytes >= MiB ? std::to_string(bytes / MiB) + " MiB" : std::to_string(bytes / KiB) + " KiB";
}

std::string byteLabel(int value) {
    char label[16];
    std::snprintf(label, sizeof label, "byte 0x%02x", value);
    return label;
}

}  // namespace

std::string clientDeviceIdentifier(const std::string& name) { return "AppleUSBAudioEngine:Brimquell:" + name; }

std::vector<HostileDeviceName> hostileDeviceNames() {
    std::vector<HostileDeviceName> names;
    const auto add = [&names](const std::string& label, const std::string& name) {
        names.push_back({label, clientDeviceIdentifier(name)});
    };
    // One term per character: a matcher that compiles by recursion needs a stack frame each.
    for (const std::size_t bytes : {8 * KiB, 64 * KiB, MiB}) {
        add("one letter, " + sizeText(bytes), std::string(bytes, 'A'));
    }
    // A backtracking matcher tries every way of sharing the product name among the stars before
    // it finds that the last character is missing.
    add("nested repetitions", repeated("(.*)*", 60, "#"));
    for (const std::size_t bytes : {4 * KiB, 64 * KiB}) {
        add("nested repetitions, " + sizeText(bytes), repeated("(.*)*", bytes - 1, "#"));
        add("alternations, " + sizeText(bytes), repeated("A|", bytes - 1, "A"));
        // Every term may match nothing, so every state of the compiled name is live at once.
        add("optional letters, " + sizeText(bytes), repeated("a?", bytes));
        add("nested groups, " + sizeText(bytes), nestedGroups(bytes));
        add("unclosed parentheses, " + sizeText(bytes), std::string(bytes, '('));
        add("unopened parentheses, " + sizeText(bytes), std::string(bytes, ')'));
        add("unclosed brackets, " + sizeText(bytes), std::string(bytes, '['));
    }
    add("nested groups, 1 MiB", nestedGroups(MiB));
    add("repetition of repetitions", "(((A{1000}){1000}){1000}){1000}");
    add("overlong repetition count", "A{0,99999999999999999999999999999}");
    add("overlong back-reference", "(A)\\99999999999999999999999999999");
    add("trailing backslash", "Model 5\\");
    std::string everyByte;
    for (int value = 1; value < 256; ++value) {
        everyByte += static_cast<char>(value);
    }
    add("every byte value", everyByte);
    for (int value = 1; value < 256; ++value) {
        add(byteLabel(value), std::string(1, static_cast<char>(value)));
    }
    return names;
}

}  // namespace hostharness
