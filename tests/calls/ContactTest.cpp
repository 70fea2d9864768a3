#include "calls/BQLColloqContact.h"

#include <cstring>

#include <gtest/gtest.h>

#include "CallRecord.h"

namespace {

TEST(Contact, EmptyRecordGivesEmptyTextsNeverNullAndTheCallId) {
    auto record = makeCallRecord(17, 7, "", "");
    BQLColloqContact contact(&record);
    for (const wchar_t* text : {contact.getName(), contact.getFriendlyName(), contact.getSipUri(),
                                contact.getPhone(), contact.getEmail(), contact.getWorkPhone(),
                                contact.getMobilePhone(), contact.getHomePhone()}) {
        ASSERT_NE(text, nullptr);
        EXPECT_STREQ(text, L"");
    }
    EXPECT_EQ(contact.getID(), 17);
}

TEST(Contact, NameAndPhoneComeFromTheRecord) {
    auto record = makeCallRecord(3, 7, "+4930123", "Ann Smith");
    BQLColloqContact contact(&record);
    EXPECT_STREQ(contact.getName(), L"Ann Smith");
    EXPECT_STREQ(contact.getPhone(), L"+4930123");
}

TEST(Contact, BytesAreWidenedOneByOneAsSignedChars) {
    auto record = makeCallRecord(3, 7, "", "\xC3\xA9");  // UTF-8 for e-acute, not decoded
    BQLColloqContact contact(&record);
    ASSERT_EQ(std::wcslen(contact.getName()), 2u);
    EXPECT_EQ(contact.getName()[0], static_cast<wchar_t>(static_cast<signed char>('\xC3')));
    EXPECT_LT(contact.getName()[0], 0);
}

TEST(Contact, UnterminatedFieldsAreCutAtTheFieldEnd) {
    auto record = makeCallRecord(3, 7, "", "");
    std::memset(record.number, '7', sizeof record.number);
    std::memset(record.displayName, 'N', sizeof record.displayName);
    BQLColloqContact contact(&record);
    EXPECT_EQ(std::wstring(contact.getPhone()), std::wstring(33, L'7'));
    EXPECT_EQ(std::wstring(contact.getName()), std::wstring(55, L'N'));
}

TEST(Contact, SetNameNullEmptiesTheName) {
    auto record = makeCallRecord(3, 7, "1", "Ann");
    BQLColloqContact contact(&record);
    contact.setName(nullptr);
    ASSERT_NE(contact.getName(), nullptr);
    EXPECT_STREQ(contact.getName(), L"");
}

TEST(Contact, SettersReplaceEveryField) {
    auto record = makeCallRecord(3, 7, "", "");
    BQLColloqContact contact(&record);
    contact.setName(L"n");
    contact.setFriendlyName(L"f");
    contact.setID(9);
    contact.setSipUri(L"sip:a@b");
    contact.setPhone(L"p");
    contact.setEmail(L"e");
    contact.setWorkPhone(L"w");
    contact.setMobilePhone(L"m");
    contact.setHomePhone(L"h");
    EXPECT_STREQ(contact.getName(), L"n");
    EXPECT_STREQ(contact.getFriendlyName(), L"f");
    EXPECT_EQ(contact.getID(), 9);
    EXPECT_STREQ(contact.getSipUri(), L"sip:a@b");
    EXPECT_STREQ(contact.getPhone(), L"p");
    EXPECT_STREQ(contact.getEmail(), L"e");
    EXPECT_STREQ(contact.getWorkPhone(), L"w");
    EXPECT_STREQ(contact.getMobilePhone(), L"m");
    EXPECT_STREQ(contact.getHomePhone(), L"h");
}

TEST(Contact, CopyTakesEveryFieldThroughTheGetters) {
    auto record = makeCallRecord(5, 7, "123", "Bob");
    BQLColloqContact original(&record);
    original.setFriendlyName(L"Bobby");
    original.setSipUri(L"sip:bob@x");
    original.setEmail(L"bob@x");
    original.setWorkPhone(L"1");
    original.setMobilePhone(L"2");
    original.setHomePhone(L"3😀");
    BQLColloqContact copy(original);
    EXPECT_STREQ(copy.getName(), L"Bob");
    EXPECT_STREQ(copy.getFriendlyName(), L"Bobby");
    EXPECT_EQ(copy.getID(), 5);
    EXPECT_STREQ(copy.getSipUri(), L"sip:bob@x");
    EXPECT_STREQ(copy.getPhone(), L"123");
    EXPECT_STREQ(copy.getEmail(), L"bob@x");
    EXPECT_STREQ(copy.getWorkPhone(), L"1");
    EXPECT_STREQ(copy.getMobilePhone(), L"2");
    EXPECT_STREQ(copy.getHomePhone(), L"3😀");
    EXPECT_NE(copy.getName(), original.getName());  // its own storage
}

TEST(Contact, ReleaseDestroysTheContact) {
    auto record = makeCallRecord(5, 7, "123", "Bob");
    IContact* contact = new BQLColloqContact(&record);
    contact->Release();  // leak or double free would show under the sanitizers
    SUCCEED();
}

}  // namespace
