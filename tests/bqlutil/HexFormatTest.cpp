#include "bqlutil/Converter.h"

#include <gtest/gtest.h>

namespace {

using Converter::ConvertToHexFormattedStr;

TEST(HexFormatTest, FourUpperCaseDigitsWithoutPrefix) {
  EXPECT_EQ(ConvertToHexFormattedStr(0xAC27), "AC27");
  EXPECT_EQ(ConvertToHexFormattedStr(0x2F0C), "2F0C");
}

TEST(HexFormatTest, SmallValuesArePaddedWithZeros) {
  EXPECT_EQ(ConvertToHexFormattedStr(0x0000), "0000");
  EXPECT_EQ(ConvertToHexFormattedStr(0x0001), "0001");
  EXPECT_EQ(ConvertToHexFormattedStr(0x0A1B), "0A1B");
}

TEST(HexFormatTest, LargestValueUsesAllDigits) {
  EXPECT_EQ(ConvertToHexFormattedStr(0xFFFF), "FFFF");
}

}  // namespace
