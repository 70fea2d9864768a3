#include "bqlutil/Converter.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

using Converter::ConvertToString;
using Converter::ConvertToWString;

const std::string kReplacementUtf8 = "\xEF\xBF\xBD";
constexpr wchar_t kReplacement = 0xFFFD;

std::wstring wide(std::initializer_list<char32_t> codePoints) {
  std::wstring text;
  for (const char32_t c : codePoints) {
    text += static_cast<wchar_t>(c);
  }
  return text;
}

TEST(ConverterTest, EmptyTextsStayEmpty) {
  EXPECT_EQ(ConvertToString(L""), "");
  EXPECT_EQ(ConvertToWString(""), L"");
}

TEST(ConverterTest, AsciiIsCopied) {
  EXPECT_EQ(ConvertToString(L"hid/vid_2f0c&pid_0a1b/SN123"), "hid/vid_2f0c&pid_0a1b/SN123");
  EXPECT_EQ(ConvertToWString("Model 5.1-X.2"), L"Model 5.1-X.2");
}

TEST(ConverterTest, BasicPlaneCharactersRoundTrip) {
  const std::string utf8 = "\xE6\x97\xA5\xE6\x9C\xAC";  // 日本
  const std::wstring utf32 = wide({0x65E5, 0x672C});

  EXPECT_EQ(ConvertToString(utf32), utf8);
  EXPECT_EQ(ConvertToWString(utf8), utf32);
}

TEST(ConverterTest, CharactersBeyondTheBasicPlaneRoundTrip) {
  const std::string utf8 = "\xF0\x9F\x98\x80";  // 😀
  const std::wstring utf32 = wide({0x1F600});

  EXPECT_EQ(ConvertToString(utf32), utf8);
  EXPECT_EQ(ConvertToWString(utf8), utf32);
}

TEST(ConverterTest, MixedTextRoundTrips) {
  const std::wstring utf32 = wide({'C', 'a', 'l', 'l', ' ', 0xE9, 0x65E5, 0x1F600, 0x10FFFF, '!'});

  EXPECT_EQ(ConvertToWString(ConvertToString(utf32)), utf32);
}

TEST(ConverterTest, EncodingLengthChangesAtEachBoundary) {
  EXPECT_EQ(ConvertToString(wide({0x7F})), "\x7F");
  EXPECT_EQ(ConvertToString(wide({0x80})), "\xC2\x80");
  EXPECT_EQ(ConvertToString(wide({0x7FF})), "\xDF\xBF");
  EXPECT_EQ(ConvertToString(wide({0x800})), "\xE0\xA0\x80");
  EXPECT_EQ(ConvertToString(wide({0xFFFF})), "\xEF\xBF\xBF");
  EXPECT_EQ(ConvertToString(wide({0x10000})), "\xF0\x90\x80\x80");
  EXPECT_EQ(ConvertToString(wide({0x10FFFF})), "\xF4\x8F\xBF\xBF");
}

TEST(ConverterTest, EmbeddedNulIsKept) {
  const std::wstring utf32(L"a\0b", 3);
  const std::string utf8("a\0b", 3);

  EXPECT_EQ(ConvertToString(utf32), utf8);
  EXPECT_EQ(ConvertToWString(utf8), utf32);
}

TEST(ConverterTest, SurrogatesInWideTextBecomeReplacementCharacters) {
  EXPECT_EQ(ConvertToString(wide({'a', 0xD800, 'b', 0xDFFF, 0xD83D, 0xDE00})),
            "a" + kReplacementUtf8 + "b" + kReplacementUtf8 + kReplacementUtf8 + kReplacementUtf8);
}

TEST(ConverterTest, ValuesBeyondUnicodeInWideTextBecomeReplacementCharacters) {
  EXPECT_EQ(ConvertToString(wide({0x110000, 'x', 0x7FFFFFFF})),
            kReplacementUtf8 + "x" + kReplacementUtf8);
  EXPECT_EQ(ConvertToString(std::wstring(1, static_cast<wchar_t>(-1))), kReplacementUtf8);
}

TEST(ConverterTest, StrayContinuationBytesBecomeOneReplacementEach) {
  EXPECT_EQ(ConvertToWString("a\x80\xBF" "b"), wide({'a', kReplacement, kReplacement, 'b'}));
}

TEST(ConverterTest, BytesThatNeverStartASequenceBecomeReplacementCharacters) {
  EXPECT_EQ(ConvertToWString("\xC0\xC1\xF5\xFF"),
            wide({kReplacement, kReplacement, kReplacement, kReplacement}));
}

TEST(ConverterTest, OverlongFormsAreRejected) {
  // "/" written in two and in three bytes.
  EXPECT_EQ(ConvertToWString("\xC0\xAF"), wide({kReplacement, kReplacement}));
  EXPECT_EQ(ConvertToWString("\xE0\x80\xAF"), wide({kReplacement, kReplacement, kReplacement}));
  EXPECT_EQ(ConvertToWString("\xF0\x80\x80\xAF"),
            wide({kReplacement, kReplacement, kReplacement, kReplacement}));
}

TEST(ConverterTest, EncodedSurrogatesAreRejected) {
  EXPECT_EQ(ConvertToWString("\xED\xA0\x80"), wide({kReplacement, kReplacement, kReplacement}));
  EXPECT_EQ(ConvertToWString("\xED\x9F\xBF"), wide({0xD7FF}));
}

TEST(ConverterTest, EncodedValuesBeyondUnicodeAreRejected) {
  EXPECT_EQ(ConvertToWString("\xF4\x90\x80\x80"),
            wide({kReplacement, kReplacement, kReplacement, kReplacement}));
}

TEST(ConverterTest, SequenceCutShortAtTheEndBecomesOneReplacement) {
  EXPECT_EQ(ConvertToWString("ok\xE6\x97"), wide({'o', 'k', kReplacement}));
  EXPECT_EQ(ConvertToWString("\xF0\x9F\x98"), wide({kReplacement}));
  EXPECT_EQ(ConvertToWString("\xC3"), wide({kReplacement}));
}

TEST(ConverterTest, SequenceCutShortKeepsTheCharacterThatInterruptedIt) {
  EXPECT_EQ(ConvertToWString("\xC3" "A"), wide({kReplacement, 'A'}));
  EXPECT_EQ(ConvertToWString("\xE6\x97" "A"), wide({kReplacement, 'A'}));
  EXPECT_EQ(ConvertToWString("\xF0\x9F\xE6\x97\xA5"), wide({kReplacement, 0x65E5}));
}

}  // namespace
