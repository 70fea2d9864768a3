// Builds client call records for tests.
#pragma once

#include <cstring>
#include <string>

#include "colloq/AccessoryAPI.h"

inline Accessory_CallInfo_v1_0_t makeCallRecord(int id, int clientState, const std::string& number,
                                                const std::string& name, int conference = 0) {
    Accessory_CallInfo_v1_0_t record;
    std::memset(&record, 0, sizeof record);
    record.callId = id;
    record.callState = clientState;
    record.conference = conference;
    std::strncpy(record.number, number.c_str(), sizeof record.number - 1);
    std::strncpy(record.displayName, name.c_str(), sizeof record.displayName - 1);
    return record;
}
