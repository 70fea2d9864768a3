#include "plugin/ClientLogText.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ClientLogText, FormatWithoutConversionsComesOutAsWritten) {
    EXPECT_EQ(clientLogMessage("Connected to Colloq successfully"), "Connected to Colloq successfully");
}

TEST(ClientLogText, ConversionSpecificationsStayAsWritten) {
    EXPECT_EQ(clientLogMessage("CallID = %d"), "CallID = %d");
    EXPECT_EQ(clientLogMessage("Colloq version '%s'"), "Colloq version '%s'");
    EXPECT_EQ(clientLogMessage("%5.2f and %-3lu and %p"), "%5.2f and %-3lu and %p");
}

TEST(ClientLogText, DoublePercentGivesOnePercent) {
    EXPECT_EQ(clientLogMessage("100%% done"), "100% done");
    EXPECT_EQ(clientLogMessage("%%%%"), "%%");
}

TEST(ClientLogText, LonePercentAtTheEndIsKept) { EXPECT_EQ(clientLogMessage("50%"), "50%"); }

TEST(ClientLogText, MessageIsCutAt255Characters) {
    const std::string longText(300, 'x');
    const std::string message = clientLogMessage(longText.c_str());
    EXPECT_EQ(message.size(), 255u);
    EXPECT_EQ(message, std::string(255, 'x'));
}

TEST(ClientLogText, MessageOf255CharactersIsKeptWhole) {
    const std::string text(254, 'y');
    EXPECT_EQ(clientLogMessage((text + "z").c_str()), text + "z");
}

TEST(ClientLogText, NullFormatGivesAnEmptyMessage) { EXPECT_EQ(clientLogMessage(nullptr), ""); }

TEST(ClientLogText, LineIsPrefixVersionColonBlankThenMessageWithNothingAfter) {
    EXPECT_EQ(clientLogLine("3.8.51535.41614", "Connected to Colloq successfully"),
              "BQLColloqPlugin v.3.8.51535.41614: Connected to Colloq successfully");
}

TEST(ClientLogText, LineBeforeBindingHasAnEmptyVersion) {
    EXPECT_EQ(clientLogLine("", "Starting"), "BQLColloqPlugin v.: Starting");
    EXPECT_EQ(clientLogLine(nullptr, "Starting"), "BQLColloqPlugin v.: Starting");
}

}  // namespace
