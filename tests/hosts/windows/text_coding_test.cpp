#include "hosts/windows/text_coding.h"

#include <gtest/gtest.h>

namespace tarnvale {
namespace {

TEST(TextCodingTest, BytesAreOfTheCodePage) {
  const TextCoding western(1252);
  EXPECT_EQ(western.Decode("Gr\xFC\xDF"
                           "e \x80"),
            "Gr\xC3\xBC\xC3\x9F"
            "e \xE2\x82\xAC");
  EXPECT_EQ(western.Encode("Gr\xC3\xBC\xC3\x9F"
                           "e \xE2\x82\xAC"),
            "Gr\xFC\xDF"
            "e \x80");
  EXPECT_EQ(TextCoding(1251).Decode("\xC6"), "\xD0\x96");
  EXPECT_EQ(western.Decode(""), "");
  EXPECT_EQ(western.Encode(""), "");
}

TEST(TextCodingTest, EveryByteOfACodePageComesBack) {
  std::string bytes;
  for (int i = 1; i < 256; ++i) bytes += static_cast<char>(i);
  const auto text = TextCoding(1252).Decode(bytes);
  if (!text) GTEST_SKIP() << "this system doesn't distinguish the unused places of its code page";
  EXPECT_EQ(TextCoding(1252).Encode(*text), bytes);
}

TEST(TextCodingTest, WhatACodePageLacksIsNotReplaced) {
  EXPECT_EQ(TextCoding(1252).Encode("\xD0\x96"), std::nullopt);
  EXPECT_EQ(TextCoding(1252).Encode("\xE2\x88\x9E"), std::nullopt) << "not as an 8";
}

TEST(TextCodingTest, AMarkedTextIsUtf8) {
  EXPECT_EQ(TextCoding(1252).Decode("\xEF\xBB\xBF\xD0\x96"), "\xEF\xBB\xBF\xD0\x96");
  EXPECT_EQ(TextCoding(1252).Encode("\xEF\xBB\xBF\xD0\x96"), "\xEF\xBB\xBF\xD0\x96");
}

TEST(TextCodingTest, AUtf8SystemTakesBytesAsTheyAre) {
  EXPECT_EQ(TextCoding(CP_UTF8).Decode("a\xFF"), "a\xFF");
  EXPECT_EQ(TextCoding(CP_UTF8).Encode("a\xFF"), "a\xFF");
}

TEST(TextCodingTest, ATextInUtf16IsRead) {
  const std::string bytes{'\xFF', '\xFE', '\x16', '\x04', 'a', '\0'};
  EXPECT_EQ(TextCoding(1252).Decode(bytes), "\xEF\xBB\xBF\xD0\x96" + std::string("a"));
}

}  // namespace
}  // namespace tarnvale
