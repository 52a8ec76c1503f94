#include "platform/file_text.h"

#include <gtest/gtest.h>

#include "tests/support/fake_machine.h"

namespace tarnvale::testing {
namespace {

class FileTextTest : public ::testing::Test {
 protected:
  FakeMachine machine;
  const OpenFiles& system = machine.open_files;
};

TEST_F(FileTextTest, WhereTheCodePageIsUtf8TextsAreAsTheyAre) {
  for (const std::string text : {"", "a", "Gr\xC3\xBC\xC3\x9F", "\xD0\x96", "no text: \xFC"}) {
    EXPECT_EQ(TextToFile(system, text), text);
    EXPECT_EQ(TextFromFile(system, text), text);
  }
}

TEST_F(FileTextTest, ACodePageIsUsedWhereItHoldsTheText) {
  machine.open_files.UseWesternCodePage();
  EXPECT_EQ(TextToFile(system, "Gr\xC3\xBC\xC3\x9F"), "Gr\xFC\xDF");
  EXPECT_EQ(TextFromFile(system, "Gr\xFC\xDF"), "Gr\xC3\xBC\xC3\x9F");
}

TEST_F(FileTextTest, WhatACodePageLacksIsUtf8BehindAMark) {
  machine.open_files.UseWesternCodePage();
  EXPECT_EQ(TextToFile(system, "\xD0\x96"), "\xEF\xBB\xBF\xD0\x96");
  EXPECT_EQ(TextFromFile(system, "\xEF\xBB\xBF\xD0\x96"), "\xD0\x96");
}

// Of another system, or of an editor that leaves the mark out.
TEST_F(FileTextTest, Utf8WithoutAMarkIsTakenForIt) {
  machine.open_files.UseWesternCodePage();
  EXPECT_EQ(TextFromFile(system, "\xD0\x96"), "\xD0\x96");
  EXPECT_EQ(TextFromFile(system, "\xD0\x96 \xFC"), "\xC3\x90\xC2\x96 \xC3\xBC") << "not all of it";
}

TEST_F(FileTextTest, EveryTextComesBack) {
  for (int page = 0; page < 2; ++page) {
    if (page == 1) machine.open_files.UseWesternCodePage();
    for (const std::string text : {"a", "\xC3\xBC", "\xD0\x96", "\xC3\x90\xC2\x96", "\xEF\xBB\xBFx",
                                   "\xEF\xBB\xBF", "\xFC"}) {
      EXPECT_EQ(TextFromFile(system, TextToFile(system, text)), text) << page;
    }
  }
}

}  // namespace
}  // namespace tarnvale::testing
