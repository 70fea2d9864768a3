// Device names and ids as the plug-in reads them out of the client's identifiers and the
// runtime's paths, without the runtime.
#include "handlers/DeviceIdentity.h"

#include <gtest/gtest.h>

#include <string>

#include "handlers/HeadsetActions.h"
#include "hubproxy/DevicePid.h"

namespace {

TEST(GetNameFromColloqPath, ThirdFieldWithItsUnderscoreTurnedIntoADot) {
    EXPECT_EQ(GetNameFromColloqPath("AppleUSBAudioEngine:Brimquell:Model_5"), "Model.5");
}

TEST(GetNameFromColloqPath, FewerThanThreeFieldsGiveAnEmptyName) { EXPECT_EQ(GetNameFromColloqPath("a:b"), ""); }

TEST(GetNameFromColloqPath, FieldsAfterTheThirdAreIgnored) { EXPECT_EQ(GetNameFromColloqPath("a:b:c:d"), "c"); }

TEST(GetNameFromColloqPath, OnlyTheFirstUnderscoreIsReplaced) {
    EXPECT_EQ(GetNameFromColloqPath("AppleUSBAudioEngine:Brimquell:Model 5_1_X.2"), "Model 5.1_X.2");
}

TEST(GetNameFromColloqPath, NullIdentifierGivesAnEmptyName) { EXPECT_EQ(GetNameFromColloqPath(nullptr), ""); }

TEST(IsBrimquell, EmptyPathIsNotTheMakers) { EXPECT_FALSE(isBrimquell("")); }

TEST(IsBrimquell, PathWithTheMakersVendorIdIs) { EXPECT_TRUE(isBrimquell("hid/vid_2f0c&pid_1a2b/A1")); }

TEST(IsBrimquell, VendorIdIsFoundInAnyCase) { EXPECT_TRUE(isBrimquell("USB\\VID_2F0C&PID_1A2B\\A1")); }

TEST(IsBrimquell, AnotherVendorsPathIsNot) { EXPECT_FALSE(isBrimquell("hid/vid_046d&pid_0a45/B2")); }

TEST(IsBrimquell, PathThatCannotBeParsedIsNot) {
    EXPECT_FALSE(isBrimquell("hid/vid_2f0c/no-product-id"));
    EXPECT_FALSE(isBrimquell("AppleUSBAudioEngine:Brimquell:Model 5"));
}

TEST(ClientDeviceIdFromName, FirstDotAndFirstHyphenBecomeUnderscores) {
    EXPECT_EQ(headsetactions::clientDeviceIdFromName("Model 5.1-X.2"), "AppleUSBAudioEngine:Brimquell:Model 5_1_X.2");
}

TEST(ClientDeviceIdFromName, OnlyTheFirstOfEachIsReplaced) {
    EXPECT_EQ(headsetactions::clientDeviceIdFromName("A-B-C.D.E"), "AppleUSBAudioEngine:Brimquell:A_B-C_D.E");
}

TEST(ClientDeviceIdFromName, EmptyNameGivesAnEmptyIdentifier) {
    EXPECT_EQ(headsetactions::clientDeviceIdFromName(""), "");
}

TEST(ClientDeviceIdFromName, NameReadBackFromTheIdentifierMatchesTheOriginalAsAPattern) {
    // The round trip is deliberately not exact: "Model_5" comes back as the pattern "Model.5".
    EXPECT_EQ(GetNameFromColloqPath(headsetactions::clientDeviceIdFromName("Model-5").c_str()), "Model.5");
}

TEST(HidalGetPid, DigitsAfterThePidMarker) {
    EXPECT_EQ(hidal_get_pid("AppleUSBAudioEngine:Brimquell:Model 5:pid_1a2b"), "1a2b");
}

TEST(HidalGetPid, FirstMarkerWinsAndItsDigitsEndAtTheFirstOtherCharacter) {
    EXPECT_EQ(hidal_get_pid("hid/vid_2f0c&pid_0a1bZ/pid_ffff"), "0a1b");
}

TEST(HidalGetPid, TextWithoutTheMarkerGivesAnEmptyId) {
    EXPECT_EQ(hidal_get_pid("AppleUSBAudioEngine:Other:Speaker"), "");
}

TEST(HidalGetPid, OnlyLowerCaseDigitsCount) {
    EXPECT_EQ(hidal_get_pid("PID_1A2B"), "");
    EXPECT_EQ(hidal_get_pid("pid_1A2B"), "1");
}

}  // namespace
