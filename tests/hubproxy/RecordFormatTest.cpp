#include <string>

#include <gtest/gtest.h>

#include "JsonLine.h"
#include "RecordFormat.h"
#include "hubproxy/ColloqRecords.h"

namespace {

TEST(RecordFormat, ReadableLineShowsEveryField) {
    const ColloqCallArgs record =
        BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 42, L"Zo\u00eb \U0001F600", L"+49 30", "", "1");

    EXPECT_EQ(DescribeRecord(record, Direction::Received),
              "received call(0) state=incoming(15) action=0 callId=42 device=\"\" contact=\"Zo\xc3\xab "
              "\xf0\x9f\x98\x80\" number=\"+49 30\" extra=\"\" keys=\"1\" productId=0x0000");
}

TEST(RecordFormat, ReadableLineNamesDeviceActionsOfDeviceMessages) {
    EXPECT_EQ(DescribeRecord(BuildSetActiveDeviceRequest(0x123), Direction::Received),
              "received active-device(2) state=device-request(20) action=set(3) callId=0 device=\"\" contact=\"\" "
              "number=\"\" extra=\"\" keys=\"\" productId=0x0123");
    EXPECT_EQ(DescribeRecord(BuildActiveDeviceReport(nullptr), Direction::Sent),
              "sent active-device(2) state=0 action=none(1) callId=0 device=\"\" contact=\"\" number=\"\" extra=\"\" "
              "keys=\"\" productId=0x0000");
}

TEST(RecordFormat, ReadableLineEscapesQuotesAndControlBytes) {
    const ColloqCallArgs record = BuildHeadsetEvent(static_cast<ColloqCallState>(99), -1, L"a\"b", "x\ty", "\\");

    EXPECT_EQ(DescribeRecord(record, Direction::Sent),
              "sent call(0) state=99 action=0 callId=-1 device=\"a\\\"b\" contact=\"\" number=\"\" extra=\"x\\x09y\" "
              "keys=\"\\\\\" productId=0x0000");
}

TEST(RecordFormat, JsonLineCarriesEveryFieldWithUtf8Texts) {
    const ColloqCallArgs record =
        BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_OUTGOING_CALL, 7, L"\U0001D11E \"q\"", L"+1\n2", "e", "k");

    const auto json = ParseJsonLine(RecordAsJson(record, Direction::Received));

    EXPECT_EQ(json.get<std::string>("direction", ""), "received");
    EXPECT_EQ(json.get<int>("messageType", -1), 0);
    EXPECT_EQ(json.get<std::string>("messageTypeName", ""), "call");
    EXPECT_EQ(json.get<int>("callState", -1), 16);
    EXPECT_EQ(json.get<std::string>("callStateName", ""), "outgoing");
    EXPECT_EQ(json.get<int>("deviceAction", -1), 0);
    EXPECT_EQ(json.get<int>("callId", -1), 7);
    EXPECT_EQ(json.get<std::string>("devicePath", "?"), "");
    EXPECT_EQ(json.get<std::string>("contactName", ""), "\xf0\x9d\x84\x9e \"q\"");
    EXPECT_EQ(json.get<std::string>("phoneNumber", ""), "+1\n2");
    EXPECT_EQ(json.get<std::string>("extraText", ""), "e");
    EXPECT_EQ(json.get<std::string>("dtmfKeys", ""), "k");
    EXPECT_EQ(json.get<unsigned>("productId", 1), 0u);
}

TEST(RecordFormat, OddBlocksAreNamedByTheirLength) {
    EXPECT_EQ(DescribeOddBlock(12), "received a block of 12 bytes, not a record");
    EXPECT_EQ(ParseJsonLine(OddBlockAsJson(12)).get<int>("blockLength", -1), 12);
}

TEST(RecordFormat, NoticesAsJson) {
    const auto json = ParseJsonLine(NoticeAsJson("listening", "/run/bqlhub/com.bqlhub.hub"));

    EXPECT_EQ(json.get<std::string>("notice", ""), "listening");
    EXPECT_EQ(json.get<std::string>("text", ""), "/run/bqlhub/com.bqlhub.hub");
}

}  // namespace
