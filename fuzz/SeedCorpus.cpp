// Writes the fuzzers' seed corpora: real hub records of every kind, real client call records
// for each callback, client device identifiers and device paths of the maker and of others, and
// version strings. Run it with the corpus folder to refresh the committed seeds:
//   fuzz_seed_corpus fuzz/corpus
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "colloq/AccessoryAPI.h"
#include "hubproxy/ColloqRecords.h"

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<uint8_t>;

fs::path root;
bool failed = false;

void write(const std::string& fuzzer, const std::string& name, const Bytes& bytes) {
    const fs::path folder = root / fuzzer;
    std::error_code error;
    fs::create_directories(folder, error);
    std::ofstream out(folder / name, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!out) {
        std::fprintf(stderr, "cannot write %s/%s\n", fuzzer.c_str(), name.c_str());
        failed = true;
    }
}

void write(const std::string& fuzzer, const std::string& name, const std::string& text) {
    write(fuzzer, name, Bytes(text.begin(), text.end()));
}

template <typename Record>
Bytes bytesOf(const Record& record) {
    const auto* begin = reinterpret_cast<const uint8_t*>(&record);
    return Bytes(begin, begin + sizeof record);
}

Bytes join(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

// The plug-in's fuzz host plugs in this headset first and tracks calls 1 and 2.
constexpr const wchar_t* kHeadsetPath = L"hid/vid_2f0c&pid_ac27/FUZZ1";

void hubRecords() {
    const std::string fuzzer = "fuzz_hub_records";
    struct Event {
        const char* name;
        ColloqCallState code;
        int callId;
        const char* keys;
    };
    const Event events[] = {
        {"device-selected", COLLOQ_DEVICE_SELECTED, -1, ""},
        {"foreground", COLLOQ_FOREGROUND, -1, ""},
        {"foreground-when-idle", COLLOQ_FOREGROUND_WHEN_IDLE, -1, ""},
        {"accept-call-1", COLLOQ_ACCEPT_CALL, 1, ""},
        {"terminate-call-1", COLLOQ_TERMINATE_CALL, 1, ""},
        {"terminate-alt-unknown-call", COLLOQ_TERMINATE_CALL_ALT, 77, ""},
        {"hold-call-2", COLLOQ_HOLD_CALL, 2, ""},
        {"resume-call-2", COLLOQ_RESUME_CALL, 2, ""},
        {"mute-on", COLLOQ_MUTE_ON, 1, ""},
        {"mute-off", COLLOQ_MUTE_OFF, 1, ""},
        {"dtmf-keys", COLLOQ_DTMF_KEY, 1, "12#*"},
        {"dtmf-no-key", COLLOQ_DTMF_KEY, 1, "255"},
        {"reject-call-2", COLLOQ_REJECT_CALL, 2, ""},
        {"device-change", COLLOQ_DEVICE_CHANGE, -1, "Model 5.1-X.2"},
    };
    for (const Event& event : events) {
        write(fuzzer, event.name, bytesOf(BuildHeadsetEvent(event.code, event.callId, kHeadsetPath, "", event.keys)));
    }
    write(fuzzer, "dial-request", bytesOf(BuildDialRequest(L"+41 44 555 12 34")));
    write(fuzzer, "active-device-report", bytesOf(BuildActiveDeviceReport(kHeadsetPath)));
    write(fuzzer, "no-active-device", bytesOf(BuildActiveDeviceReport(nullptr)));
    write(fuzzer, "report-then-change",
          join({bytesOf(BuildActiveDeviceReport(L"hid/vid_2f0c&pid_0142/FUZZ2")),
                bytesOf(BuildHeadsetEvent(COLLOQ_DEVICE_CHANGE, -1, L"hid/vid_2f0c&pid_0142/FUZZ2", "", "Voyage 60"))}));

    // Every text field filled to its last character, as a careless hub might send it.
    ColloqCallArgs full = BuildHeadsetEvent(COLLOQ_DTMF_KEY, 1, kHeadsetPath, "", "");
    std::wmemset(full.devicePath, L'x', sizeof full.devicePath / sizeof(wchar_t));
    std::wmemset(full.phoneNumber, L'7', sizeof full.phoneNumber / sizeof(wchar_t));
    std::memset(full.extraText, 'e', sizeof full.extraText);
    std::memset(full.dtmfKeys, '5', sizeof full.dtmfKeys);
    write(fuzzer, "unterminated-texts", bytesOf(full));

    const Bytes report = bytesOf(BuildActiveDeviceReport(kHeadsetPath));
    write(fuzzer, "short-block", Bytes(report.begin(), report.begin() + 100));
}

Bytes callStep(uint8_t callback, int32_t id, int32_t state, const char* number, const char* name) {
    Accessory_CallInfo_v1_0_t record{};
    record.callId = id;
    record.callState = state;
    std::memcpy(record.number, number, std::min(std::strlen(number), sizeof record.number));
    std::memcpy(record.displayName, name, std::min(std::strlen(name), sizeof record.displayName));
    return join({Bytes{callback}, bytesOf(record)});
}

void clientCalls() {
    const std::string fuzzer = "fuzz_client_calls";
    // Selector values as the fuzzer reads them.
    enum : uint8_t { Incoming, CallWaiting, RemoteAlerting, Reorder, Connected, Hold, Busy, OnHook, OffHook, Mute, Unmute };
    write(fuzzer, "incoming-answered-ended",
          join({callStep(Incoming, 1, 7, "5551234", "Ada Lovelace"), callStep(Connected, 1, 9, "5551234", "Ada Lovelace"),
                callStep(OnHook, 1, 0, "", "")}));
    write(fuzzer, "call-waiting-twice",
          join({callStep(CallWaiting, 2, 7, "5550002", "Bob"), callStep(CallWaiting, 2, 7, "5550002", "Bob")}));
    write(fuzzer, "outgoing-held-resumed-busy",
          join({callStep(RemoteAlerting, 3, 6, "0800123", "Hotline"), callStep(Connected, 3, 9, "0800123", "Hotline"),
                callStep(Hold, 3, 10, "", ""), callStep(Connected, 3, 9, "", ""), callStep(Busy, 3, 0, "", "")}));
    write(fuzzer, "reorder-offhook",
          join({callStep(Reorder, 4, 3, "911", ""), callStep(OffHook, 4, 0, "", "")}));
    write(fuzzer, "muted-then-ended",
          join({callStep(Incoming, 5, 7, "5555", "Eve"), callStep(Connected, 5, 9, "", ""), callStep(Mute, 0, 0, "", ""),
                callStep(Unmute, 0, 0, "", ""), callStep(Mute, 0, 0, "", ""), callStep(OnHook, 5, 0, "", "")}));
    write(fuzzer, "unterminated-texts",
          callStep(Incoming, 6, 7, "123456789012345678901234567890123",
                   "A display name that fills all fifty-five bytes exactly!"));
    write(fuzzer, "non-ascii-texts", callStep(Incoming, 7, 7, "+41\xff\x80", "Zo\xc3\xab \xf0\x9f\x98\x80 \xc3\x28"));
    write(fuzzer, "odd-ids-and-states",
          join({callStep(Connected, -1, 99, "", ""), callStep(Incoming, 0, -5, "0", "zero"),
                callStep(Hold, INT32_MAX, 10, "", "")}));
}

void deviceIds() {
    const std::string fuzzer = "fuzz_device_ids";
    write(fuzzer, "maker-headset", "AppleUSBAudioEngine:Brimquell:Model 5_1-X.2");
    write(fuzzer, "maker-headset-plain-name", "AppleUSBAudioEngine:Brimquell:Voyage 60");
    write(fuzzer, "other-maker", "AppleUSBAudioEngine:Logitech:H390 USB");
    write(fuzzer, "built-in-speaker", "BuiltInSpeakerDevice");
    write(fuzzer, "two-fields", "a:b");
    write(fuzzer, "four-fields", "a:b:c:d");
    write(fuzzer, "pattern-characters", "AppleUSBAudioEngine:Brimquell:Model+(5");
    write(fuzzer, "wildcard-name", "::Model.*");
    write(fuzzer, "invalid-pattern", "x:y:[a-");
    write(fuzzer, "empty-name", "AppleUSBAudioEngine:Brimquell:");
    write(fuzzer, "device-path", "hid/vid_2f0c&pid_ac27/FUZZ1");
    write(fuzzer, "with-second-text", std::string("AppleUSBAudioEngine:Brimquell:Voyage 60\0second", 46));
    // Names that once stalled or broke the lookup: kept so that every run tries them again.
    write(fuzzer, "nested-repetitions", "a:b:(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*(.*)*X");
    write(fuzzer, "overlong-back-reference", "x:y:(Model 5)\\12345678901234567890123");
    write(fuzzer, "overlong-count", "x:y:Model 5{0,12345678901234567890123}");
    // Names whose compile once recursed per term and overflowed a 512 KiB stack.
    write(fuzzer, "one-letter-8k", "x:y:" + std::string(8192, 'A'));
    write(fuzzer, "nested-groups-4k", "x:y:" + std::string(2047, '(') + "A" + std::string(2047, ')'));
    // Syntax that RE2 reads otherwise than ECMAScript, refused as invalid.
    write(fuzzer, "perl-only-syntax", "x:y:(?i)model \\QX\\E{,2}[]");
}

void texts() {
    const std::string fuzzer = "fuzz_text";
    // The first byte is the number of delimiters that follow; the text comes after them.
    const auto dotted = [](const std::string& text) { return std::string("\x01.") + text; };
    write(fuzzer, "plugin-version", dotted("3.8.51535.41614"));
    write(fuzzer, "old-client-version", dotted("9.5.0.0"));
    write(fuzzer, "new-client-version", dotted("10.0.0.0"));
    write(fuzzer, "three-parts", dotted("3.8.51535"));
    write(fuzzer, "five-parts", dotted("3.8.51535.41614.1"));
    write(fuzzer, "runs-of-dots", dotted("..3..8."));
    write(fuzzer, "trailing-letters", dotted("8b.1.2.3"));
    write(fuzzer, "not-a-number", dotted("x.1.2.3"));
    write(fuzzer, "beyond-int", dotted("99999999999.1.2.3"));
    write(fuzzer, "client-device-id", std::string("\x01:") + "AppleUSBAudioEngine:Brimquell:Model_5");
    write(fuzzer, "two-delimiters", std::string("\x02:/") + "hid/vid_2f0c&pid_ac27/S1:x");
    write(fuzzer, "maker-path", std::string(1, '\0') + "hid/vid_2f0c&pid_ac27/S1");
    write(fuzzer, "other-path", std::string(1, '\0') + "USB\\VID_046D&PID_0A45\\6&2A1B");
    write(fuzzer, "pid-only", std::string(1, '\0') + "hid/pid_0142/x");
    write(fuzzer, "utf8", std::string(1, '\0') + "Zo\xc3\xab \xf0\x9f\x98\x80 Model 5.1-X.2");
    write(fuzzer, "broken-utf8", std::string(1, '\0') + "\xc3\x28\xed\xa0\x80\xf4\x90\x80\x80\xe0\x80\xff");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <corpus folder>\n", argv[0]);
        return 2;
    }
    root = argv[1];
    hubRecords();
    clientCalls();
    deviceIds();
    texts();
    return failed ? 1 : 0;
}
