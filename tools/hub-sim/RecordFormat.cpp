#include "RecordFormat.h"

#include <cstdio>
#include <sstream>

#include "bqlutil/Converter.h"
#include "hubproxy/ColloqRecordText.h"

namespace {

const char* DirectionName(Direction direction) { return direction == Direction::Received ? "received" : "sent"; }

std::string Utf8(const std::wstring& text) { return Converter::ConvertToString(text); }

// "name(code)" for a known code, the bare number otherwise.
std::string Coded(const std::string& name, uint32_t code) {
    return name.empty() ? std::to_string(code) : name + "(" + std::to_string(code) + ")";
}

// Quotes a text for the readable line: blanks stay, quotes, backslashes and control bytes are escaped.
std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            quoted += '\\';
            quoted += c;
        } else if (byte < 0x20 || byte == 0x7f) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\x%02x", byte);
            quoted += escaped;
        } else {
            quoted += c;
        }
    }
    return quoted + "\"";
}

std::string JsonString(const std::string& text) {
    std::string json = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 0x20 || byte == 0x7f) {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", byte);
            json += escaped;
        } else {
            json += c;
        }
    }
    return json + "\"";
}

}  // namespace

std::string CallStateName(uint32_t code) {
    static const char* const names[] = {
        "",          "device-selected", "foreground", "foreground-when-idle", "foreground-alt",
        "foreground-when-idle-alt", "accept", "terminate", "terminate-alt", "hold",
        "resume",    "mute",            "unmute",     "dtmf",                 "reject",
        "incoming",  "outgoing",        "answered",   "insert",               "device-change",
        "device-request"};
    return code < sizeof names / sizeof names[0] ? names[code] : "";
}

std::string MessageTypeName(uint32_t type) {
    switch (type) {
    case MESSAGE_TYPE_CALL: return "call";
    case MESSAGE_TYPE_DIAL: return "dial";
    case MESSAGE_TYPE_ACTIVE_DEVICE: return "active-device";
    default: return "";
    }
}

std::string DeviceActionName(uint32_t action) {
    switch (action) {
    case DEVICE_ACTION_ACTIVE: return "active";
    case DEVICE_ACTION_NONE: return "none";
    case DEVICE_ACTION_GET: return "get";
    case DEVICE_ACTION_SET: return "set";
    default: return "";
    }
}

std::string DescribeRecord(const ColloqCallArgs& record, Direction direction) {
    char productId[16];
    std::snprintf(productId, sizeof productId, "0x%04x", static_cast<unsigned>(record.productId));
    std::ostringstream line;
    line << DirectionName(direction) << ' ' << Coded(MessageTypeName(record.messageType), record.messageType)
         << " state=" << Coded(CallStateName(record.callState), record.callState)
         << " action="
         << (record.messageType == MESSAGE_TYPE_ACTIVE_DEVICE
                 ? Coded(DeviceActionName(record.deviceAction), record.deviceAction)
                 : std::to_string(record.deviceAction))
         << " callId=" << record.callId
         << " device=" << Quoted(Utf8(ReadWideField(record.devicePath)))
         << " contact=" << Quoted(Utf8(ReadWideField(record.contactName)))
         << " number=" << Quoted(Utf8(ReadWideField(record.phoneNumber)))
         << " extra=" << Quoted(ReadNarrowField(record.extraText))
         << " keys=" << Quoted(ReadNarrowField(record.dtmfKeys))
         << " productId=" << productId;
    return line.str();
}

std::string RecordAsJson(const ColloqCallArgs& record, Direction direction) {
    std::ostringstream json;
    json << "{\"direction\":" << JsonString(DirectionName(direction))
         << ",\"messageType\":" << record.messageType
         << ",\"messageTypeName\":" << JsonString(MessageTypeName(record.messageType))
         << ",\"callState\":" << record.callState
         << ",\"callStateName\":" << JsonString(CallStateName(record.callState))
         << ",\"deviceAction\":" << record.deviceAction
         << ",\"callId\":" << record.callId
         << ",\"devicePath\":" << JsonString(Utf8(ReadWideField(record.devicePath)))
         << ",\"contactName\":" << JsonString(Utf8(ReadWideField(record.contactName)))
         << ",\"phoneNumber\":" << JsonString(Utf8(ReadWideField(record.phoneNumber)))
         << ",\"extraText\":" << JsonString(ReadNarrowField(record.extraText))
         << ",\"dtmfKeys\":" << JsonString(ReadNarrowField(record.dtmfKeys))
         << ",\"productId\":" << record.productId << "}";
    return json.str();
}

std::string DescribeOddBlock(int length) {
    return "received a block of " + std::to_string(length) + " bytes, not a record";
}

std::string OddBlockAsJson(int length) {
    return "{\"direction\":\"received\",\"blockLength\":" + std::to_string(length) + "}";
}

std::string NoticeAsJson(const std::string& kind, const std::string& text) {
    return "{\"notice\":" + JsonString(kind) + ",\"text\":" + JsonString(text) + "}";
}
