// How the simulator shows a hub record: one readable line, or one JSON object on one line.
#pragma once

#include <string>

#include "hubproxy/ColloqCallArgs.h"

// Which way a record went, as seen from the hub.
enum class Direction { Received, Sent };

// e.g. received call state=incoming(15) action=0 callId=42 device="" contact="Zoë" number="+4930"
//      extra="" keys="" productId=0x0000
std::string DescribeRecord(const ColloqCallArgs& record, Direction direction);

// All fields, numbers and names, with texts as UTF-8 strings.
std::string RecordAsJson(const ColloqCallArgs& record, Direction direction);

// A received block that is not a record.
std::string DescribeOddBlock(int length);
std::string OddBlockAsJson(int length);

// The simulator's own notices ("listening", errors), as a line or as JSON.
std::string NoticeAsJson(const std::string& kind, const std::string& text);

// Names of the codes, as the simulator's commands spell them; empty for unknown values.
std::string CallStateName(uint32_t code);
std::string MessageTypeName(uint32_t type);
std::string DeviceActionName(uint32_t action);
