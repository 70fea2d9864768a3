#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "hubproxy/ColloqRecordText.h"
#include "hubproxy/ColloqRecords.h"

namespace {

std::vector<unsigned char> BytesOf(const ColloqCallArgs& record) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(&record);
    return std::vector<unsigned char>(bytes, bytes + sizeof record);
}

std::vector<unsigned char> Slice(const std::vector<unsigned char>& bytes, std::size_t from, std::size_t count) {
    return std::vector<unsigned char>(bytes.begin() + static_cast<std::ptrdiff_t>(from),
                                      bytes.begin() + static_cast<std::ptrdiff_t>(from + count));
}

bool AllZero(const std::vector<unsigned char>& bytes, std::size_t from, std::size_t to) {
    for (std::size_t at = from; at < to; ++at) {
        if (bytes[at] != 0) {
            return false;
        }
    }
    return true;
}

TEST(ColloqRecords, SetActiveDeviceRequestForProduct0x123CarriesItsExactBytes) {
    const std::vector<unsigned char> bytes = BytesOf(BuildSetActiveDeviceRequest(0x123));

    ASSERT_EQ(bytes.size(), 2196u);
    EXPECT_EQ(Slice(bytes, 0, 16), (std::vector<unsigned char>{0x02, 0, 0, 0, 0x14, 0, 0, 0, 0x03, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(Slice(bytes, 2192, 4), (std::vector<unsigned char>{0x23, 0x01, 0, 0}));
    EXPECT_TRUE(AllZero(bytes, 16, 2192));
}

TEST(ColloqRecords, GetActiveDeviceRequestAsksWithActionTwoAndNoProduct) {
    const std::vector<unsigned char> bytes = BytesOf(BuildGetActiveDeviceRequest());

    EXPECT_EQ(Slice(bytes, 0, 16), (std::vector<unsigned char>{0x02, 0, 0, 0, 0x14, 0, 0, 0, 0x02, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_TRUE(AllZero(bytes, 16, 2196));
}

TEST(ColloqRecords, CallRecordCarriesItsHeaderAndTextsAndZeroesTheDeviceFields) {
    const ColloqCallArgs record =
        BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 42, L"Ada Lovelace", L"+44 20 7946 0000", "first", "12#");

    EXPECT_EQ(record.messageType, MESSAGE_TYPE_CALL);
    EXPECT_EQ(record.callState, COLLOQ_INCOMING_CALL);
    EXPECT_EQ(record.deviceAction, 0u);
    EXPECT_EQ(record.callId, 42);
    EXPECT_EQ(ReadWideField(record.contactName), L"Ada Lovelace");
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"+44 20 7946 0000");
    EXPECT_EQ(ReadNarrowField(record.extraText), "first");
    EXPECT_EQ(ReadNarrowField(record.dtmfKeys), "12#");
    const std::vector<unsigned char> bytes = BytesOf(record);
    EXPECT_TRUE(AllZero(bytes, 16, 528)) << "device path";
    EXPECT_TRUE(AllZero(bytes, 2192, 2196)) << "product id";
}

TEST(ColloqRecords, NarrowFieldsAreZeroFilledBehindTheirText) {
    const ColloqCallArgs record = BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_HOLD_CALL, 1, L"", L"", "ab", "c");
    const std::vector<unsigned char> bytes = BytesOf(record);

    EXPECT_TRUE(AllZero(bytes, 2066, 2128));
    EXPECT_TRUE(AllZero(bytes, 2129, 2192));
}

TEST(ColloqRecords, OverLongContactNameIsCutToItsFieldWithATerminator) {
    const std::wstring name(300, L'n');
    const ColloqCallArgs record = BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 1, name.c_str(), L"1", "", "");

    EXPECT_EQ(ReadWideField(record.contactName), std::wstring(255, L'n'));
    EXPECT_EQ(record.contactName[255], L'\0');
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"1") << "the next field is untouched";
}

TEST(ColloqRecords, OverLongPhoneNumberIsCutToItsFieldWithATerminator) {
    const std::wstring number(128, L'7');
    const ColloqCallArgs record = BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_OUTGOING_CALL, 1, L"x", number.c_str(), "e", "");

    EXPECT_EQ(ReadWideField(record.phoneNumber), std::wstring(127, L'7'));
    EXPECT_EQ(record.phoneNumber[127], L'\0');
    EXPECT_EQ(ReadNarrowField(record.extraText), "e") << "the next field is untouched";
}

TEST(ColloqRecords, NarrowTextOfSixtyFourBytesFillsItsFieldWithoutTerminator) {
    const std::string keys(64, 'k');
    const std::string longer(70, 'x');
    const ColloqCallArgs record =
        BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_DTMF_KEY, 1, L"", L"", longer.c_str(), keys.c_str());

    EXPECT_EQ(std::string(record.dtmfKeys, 64), keys);
    EXPECT_EQ(std::string(record.extraText, 64), std::string(64, 'x'));
    EXPECT_EQ(record.productId, 0u) << "nothing spills into the next field";
}

TEST(ColloqRecords, NullTextsCountAsEmpty) {
    const ColloqCallArgs record =
        BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_TERMINATE_CALL, 3, nullptr, nullptr, nullptr, nullptr);

    EXPECT_EQ(ReadWideField(record.contactName), L"");
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"");
    EXPECT_EQ(ReadNarrowField(record.extraText), "");
    EXPECT_EQ(ReadNarrowField(record.dtmfKeys), "");
}

TEST(ColloqRecords, WideTextsKeepCharactersOutsideTheBasicMultilingualPlaneAsOneUnit) {
    const ColloqCallArgs record =
        BuildCallRecord(MESSAGE_TYPE_CALL, COLLOQ_INCOMING_CALL, 1, L"Zo\u00eb \U0001F600", L"\U0001D11E", "", "");

    EXPECT_EQ(record.contactName[4], static_cast<wchar_t>(0x1F600));
    EXPECT_EQ(record.contactName[5], L'\0');
    EXPECT_EQ(ReadWideField(record.phoneNumber), std::wstring(1, static_cast<wchar_t>(0x1D11E)));
}

TEST(ColloqRecords, HeadsetEventCarriesDevicePathAndBothFreeTexts) {
    const ColloqCallArgs record = BuildHeadsetEvent(COLLOQ_DTMF_KEY, 9, L"hid/vid_2f0c&pid_0a1b/SN1", "x", "1#");

    EXPECT_EQ(record.messageType, MESSAGE_TYPE_CALL);
    EXPECT_EQ(record.callState, COLLOQ_DTMF_KEY);
    EXPECT_EQ(record.callId, 9);
    EXPECT_EQ(ReadWideField(record.devicePath), L"hid/vid_2f0c&pid_0a1b/SN1");
    EXPECT_EQ(ReadNarrowField(record.extraText), "x");
    EXPECT_EQ(ReadNarrowField(record.dtmfKeys), "1#");
}

TEST(ColloqRecords, DialRequestCarriesTheNumber) {
    const ColloqCallArgs record = BuildDialRequest(L"+1 555 0100");

    EXPECT_EQ(record.messageType, MESSAGE_TYPE_DIAL);
    EXPECT_EQ(ReadWideField(record.phoneNumber), L"+1 555 0100");
}

TEST(ColloqRecords, ActiveDeviceReportNamesTheDeviceOrNone) {
    const ColloqCallArgs active = BuildActiveDeviceReport(L"hid/vid_2f0c&pid_0001/A");
    const ColloqCallArgs none = BuildActiveDeviceReport(nullptr);

    EXPECT_EQ(active.messageType, MESSAGE_TYPE_ACTIVE_DEVICE);
    EXPECT_EQ(active.deviceAction, static_cast<uint32_t>(DEVICE_ACTION_ACTIVE));
    EXPECT_EQ(ReadWideField(active.devicePath), L"hid/vid_2f0c&pid_0001/A");
    EXPECT_EQ(none.messageType, MESSAGE_TYPE_ACTIVE_DEVICE);
    EXPECT_EQ(none.deviceAction, static_cast<uint32_t>(DEVICE_ACTION_NONE));
    EXPECT_EQ(ReadWideField(none.devicePath), L"");
}

TEST(ColloqRecords, ReadingAFieldFilledToTheBrimStopsAtItsEnd) {
    ColloqCallArgs record{};
    std::memset(record.extraText, 'e', sizeof record.extraText);
    std::memset(record.dtmfKeys, 'd', sizeof record.dtmfKeys);
    for (wchar_t& c : record.devicePath) {
        c = L'p';
    }
    record.contactName[0] = L'c';

    EXPECT_EQ(ReadNarrowField(record.extraText), std::string(64, 'e'));
    EXPECT_EQ(ReadWideField(record.devicePath), std::wstring(128, L'p'));
}

}  // namespace
