#include "hubproxy/ColloqRecords.h"

#include "hubproxy/ColloqRecordText.h"

namespace {

ColloqCallArgs EmptyRecord(MessageType type, ColloqCallState state, uint32_t deviceAction, int callId) {
    ColloqCallArgs record{};
    record.messageType = type;
    record.callState = state;
    record.deviceAction = deviceAction;
    record.callId = callId;
    return record;
}

}  // namespace

ColloqCallArgs BuildCallRecord(MessageType type, ColloqCallState state, int callId, const wchar_t* contactName,
                               const wchar_t* phoneNumber, const char* extraText, const char* dtmfKeys) {
    ColloqCallArgs record = EmptyRecord(type, state, 0, callId);
    CopyWideField(record.phoneNumber, phoneNumber);
    CopyWideField(record.contactName, contactName);
    CopyNarrowField(record.extraText, extraText);
    CopyNarrowField(record.dtmfKeys, dtmfKeys);
    return record;
}

ColloqCallArgs BuildSetActiveDeviceRequest(uint32_t productId) {
    ColloqCallArgs record = EmptyRecord(MESSAGE_TYPE_ACTIVE_DEVICE, COLLOQ_DEVICE_REQUEST, DEVICE_ACTION_SET, 0);
    record.productId = productId;
    return record;
}

ColloqCallArgs BuildGetActiveDeviceRequest() {
    return EmptyRecord(MESSAGE_TYPE_ACTIVE_DEVICE, COLLOQ_DEVICE_REQUEST, DEVICE_ACTION_GET, 0);
}

ColloqCallArgs BuildHeadsetEvent(ColloqCallState state, int callId, const wchar_t* devicePath, const char* extraText,
                                 const char* dtmfKeys) {
    ColloqCallArgs record = EmptyRecord(MESSAGE_TYPE_CALL, state, 0, callId);
    CopyWideField(record.devicePath, devicePath);
    CopyNarrowField(record.extraText, extraText);
    CopyNarrowField(record.dtmfKeys, dtmfKeys);
    return record;
}

ColloqCallArgs BuildDialRequest(const wchar_t* number) {
    ColloqCallArgs record = EmptyRecord(MESSAGE_TYPE_DIAL, static_cast<ColloqCallState>(0), 0, 0);
    CopyWideField(record.phoneNumber, number);
    return record;
}

ColloqCallArgs BuildActiveDeviceReport(const wchar_t* devicePath) {
    if (devicePath == nullptr) {
        return EmptyRecord(MESSAGE_TYPE_ACTIVE_DEVICE, static_cast<ColloqCallState>(0), DEVICE_ACTION_NONE, 0);
    }
    ColloqCallArgs record = EmptyRecord(MESSAGE_TYPE_ACTIVE_DEVICE, static_cast<ColloqCallState>(0), DEVICE_ACTION_ACTIVE, 0);
    CopyWideField(record.devicePath, devicePath);
    return record;
}
