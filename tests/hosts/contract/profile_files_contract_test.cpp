// Private profiles: what every host must do.
#include "tests/hosts/contract/host_under_test.h"

namespace tarnvale::testing {
namespace {

constexpr char kFile[] = "C:\\Data\\t.ini";

class ProfilesContract : public HostTest {
 protected:
  std::string Read(const std::string& section, const std::string& key) {
    return profiles.Read(section, key, "(none)", 255, kFile);
  }
  // Writes one value and gives back what the file holds then.
  std::string AfterWrite(const std::string& section, const std::string& key,
                         const std::string& value) {
    EXPECT_TRUE(profiles.Write(section, key, value, kFile));
    EXPECT_TRUE(profiles.Flush(kFile));
    return host.Content(kFile);
  }
};
INSTANTIATE_TEST_SUITE_P(Hosts, ProfilesContract, ::testing::ValuesIn(AllHosts()), NameOfHost);

TEST_P(ProfilesContract, ReadsTheValueOfAKey) {
  host.Write(kFile, "[When]\r\nAlwaysAt=12:00\r\nEach=???\r\n[Log]\r\nSave=True\r\n");
  EXPECT_EQ(Read("When", "AlwaysAt"), "12:00");
  EXPECT_EQ(Read("When", "Each"), "???");
  EXPECT_EQ(Read("Log", "Save"), "True");
}

TEST_P(ProfilesContract, TheFallbackStandsInForWhatIsMissing) {
  EXPECT_EQ(Read("When", "AlwaysAt"), "(none)");
  host.Write(kFile, "[When]\r\nAlwaysAt=12:00\r\n");
  EXPECT_EQ(Read("When", "Each"), "(none)");
  EXPECT_EQ(Read("Log", "AlwaysAt"), "(none)");
  EXPECT_EQ(profiles.Read("When", "Each", "", 255, "C:\\Missing\\t.ini"), "");
}

TEST_P(ProfilesContract, AnEmptyValueIsNotMissing) {
  host.Write(kFile, "[When]\r\nEach=\r\n");
  EXPECT_EQ(Read("When", "Each"), "");
}

TEST_P(ProfilesContract, SectionsAndKeysAreFoundWithoutRegardToCase) {
  host.Write(kFile, "[WHEN]\r\nalwaysat=12:00\r\n");
  EXPECT_EQ(Read("When", "AlwaysAt"), "12:00");
}

TEST_P(ProfilesContract, TheFirstOfEqualKeysAndSectionsCounts) {
  host.Write(kFile,
             "[When]\r\nEach=1\r\nEACH=2\r\n[Log]\r\nSave=3\r\n[when]\r\nEach=4\r\nDays=5\r\n");
  EXPECT_EQ(Read("When", "Each"), "1");
  EXPECT_EQ(Read("When", "Days"), "(none)");
  EXPECT_EQ(AfterWrite("When", "Each", "9"),
            "[When]\r\nEach=9\r\nEACH=2\r\n[Log]\r\nSave=3\r\n[when]\r\nEach=4\r\nDays=5\r\n");
}

TEST_P(ProfilesContract, BlanksAroundKeysAndValuesAreDropped) {
  host.Write(kFile, "  [ When ]  \r\n \tAlwaysAt \t= \t12:00 at noon \t\r\n");
  EXPECT_EQ(Read("When", "AlwaysAt"), "12:00 at noon");
}

TEST_P(ProfilesContract, OnePairOfQuotesAroundAValueIsDropped) {
  host.Write(kFile,
             "[A]\r\n1=\" x \"\r\n2='y'\r\n3=\"\"z\"\"\r\n4=\"open\r\n5=\"mixed'\r\n6=\"\r\n");
  EXPECT_EQ(Read("A", "1"), " x ");
  EXPECT_EQ(Read("A", "2"), "y");
  EXPECT_EQ(Read("A", "3"), "\"z\"");
  EXPECT_EQ(Read("A", "4"), "\"open");
  EXPECT_EQ(Read("A", "5"), "\"mixed'");
  EXPECT_EQ(Read("A", "6"), "\"");
}

TEST_P(ProfilesContract, ACommentIsNoKey) {
  host.Write(kFile, "[A]\r\n;x=1\r\n  ; y=2\r\nz=3;4\r\n");
  EXPECT_EQ(Read("A", ";x"), "(none)");
  EXPECT_EQ(Read("A", "; y"), "(none)");
  EXPECT_EQ(Read("A", "z"), "3;4");
}

TEST_P(ProfilesContract, AValueMayHoldAnEqualsSign) {
  host.Write(kFile, "[A]\r\nx=a=b\r\n");
  EXPECT_EQ(Read("A", "x"), "a=b");
}

TEST_P(ProfilesContract, LinesThatAreNoKeysAreNoKeys) {
  host.Write(kFile, "early=1\r\n[A]\r\nplain text\r\n=nameless\r\n[open\r\nx=2\r\n");
  EXPECT_EQ(Read("", "early"), "(none)");
  EXPECT_EQ(Read("A", "plain text"), "(none)");
  EXPECT_EQ(Read("A", "x"), "2");
}

TEST_P(ProfilesContract, TheValueIsCutToTheBuffer) {
  host.Write(kFile, "[A]\r\nx=" + std::string(300, 'v') + "\r\n");
  EXPECT_EQ(profiles.Read("A", "x", "", 255, kFile), std::string(254, 'v'));
  EXPECT_EQ(profiles.Read("A", "x", "", 1, kFile), "");
  EXPECT_EQ(profiles.Read("A", "y", "fallback", 5, kFile), "fall");
}

TEST_P(ProfilesContract, TheBufferCountsCharactersAndCutsNoneOfThem) {
  std::string letters;
  for (int i = 0; i < 300; ++i) letters += "\xD0\x96";
  host.Write(kFile, "[A]\r\nx=" + letters + "\r\ny=\xFF\xFE\xD0\xD0\x96\r\n");
  EXPECT_EQ(profiles.Read("A", "x", "", 255, kFile), letters.substr(0, 2 * 254));
  EXPECT_EQ(profiles.Read("A", "y", "", 4, kFile), "\xFF\xFE\xD0");
  EXPECT_EQ(profiles.Read("A", "y", "", 5, kFile), "\xFF\xFE\xD0\xD0\x96");
  EXPECT_EQ(profiles.Read("A", "z", "\xD0\x96\xD0\x96", 2, kFile), "\xD0\x96");
}

TEST_P(ProfilesContract, AWriteMakesFileSectionAndKey) {
  EXPECT_EQ(AfterWrite("When", "AlwaysAt", "12:00"), "[When]\r\nAlwaysAt=12:00\r\n");
  EXPECT_EQ(AfterWrite("Log", "Save", "True"),
            "[When]\r\nAlwaysAt=12:00\r\n[Log]\r\nSave=True\r\n");
  EXPECT_EQ(AfterWrite("When", "Each", "???"),
            "[When]\r\nAlwaysAt=12:00\r\nEach=???\r\n[Log]\r\nSave=True\r\n");
}

TEST_P(ProfilesContract, AWriteReplacesAValueInPlaceAndNothingElse) {
  host.Write(kFile,
             "; mine\r\n\r\n[When]\n  Each = 1 \r\n\r\nfree text\n[Log]\r\nSave=True\r\n\r\n");
  EXPECT_EQ(AfterWrite("when", "each", "2"),
            "; mine\r\n\r\n[When]\n  Each = 2\r\n\r\nfree text\n[Log]\r\nSave=True\r\n\r\n");
}

TEST_P(ProfilesContract, ANewKeyStandsBehindTheLastLineOfItsSection) {
  host.Write(kFile, "[A]\r\nx=1\r\n; note\r\n\r\n[B]\r\ny=2\r\n");
  EXPECT_EQ(AfterWrite("A", "z", "3"), "[A]\r\nx=1\r\n; note\r\nz=3\r\n\r\n[B]\r\ny=2\r\n");
}

TEST_P(ProfilesContract, NewLinesEndAsTheFirstLineDoes) {
  host.Write(kFile, "[A]\nx=1\n");
  EXPECT_EQ(AfterWrite("B", "y", "2"), "[A]\nx=1\n[B]\ny=2\n");
}

TEST_P(ProfilesContract, ALastLineWithoutAnEndGetsOneWhenAnotherFollows) {
  host.Write(kFile, "[A]\r\nx=1");
  EXPECT_EQ(AfterWrite("A", "x", "2"), "[A]\r\nx=2");
  EXPECT_EQ(AfterWrite("A", "y", "3"), "[A]\r\nx=2\r\ny=3\r\n");
}

TEST_P(ProfilesContract, AByteOrderMarkStaysAndHidesNothing) {
  host.Write(kFile, "\xEF\xBB\xBF[A]\r\nx=1\r\n");
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_EQ(AfterWrite("A", "x", "2"), "\xEF\xBB\xBF[A]\r\nx=2\r\n");
}

TEST_P(ProfilesContract, BytesOutsideAsciiGoThrough) {
  const std::string value =
      "C:\\Gr\xC3\xBC\xC3\x9F"
      "e\\\xFF";
  AfterWrite("Entries", "0", value);
  EXPECT_EQ(Read("Entries", "0"), value);
}

TEST_P(ProfilesContract, AReadSeesHeldBackWrites) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  EXPECT_EQ(Read("A", "x"), "2");
  EXPECT_EQ(profiles.Read("A", "x", "", 255, "C:\\DATA\\T.INI"), "2");
}

TEST_P(ProfilesContract, AReadSeesWhatOthersWroteMeanwhile) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  EXPECT_EQ(Read("A", "x"), "1");
  host.Write(kFile, "[A]\r\nx=10\r\n");
  EXPECT_EQ(Read("A", "x"), "10");
  host.Remove(kFile);
  EXPECT_EQ(Read("A", "x"), "(none)");
}

TEST_P(ProfilesContract, AFlushKeepsWhatOthersWroteMeanwhile) {
  host.Write(kFile, "[A]\r\nx=1\r\ny=1\r\n");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  host.Write(kFile, "[A]\r\nx=10\r\ny=10\r\n[B]\r\nz=3\r\n");
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=2\r\ny=10\r\n[B]\r\nz=3\r\n");
}

TEST_P(ProfilesContract, AFileMadeMeanwhileKeepsItsContent) {
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  host.Write(kFile, "[B]\r\nz=3\r\n");
  EXPECT_EQ(Read("A", "x"), "2");
  EXPECT_EQ(Read("B", "z"), "3");
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[B]\r\nz=3\r\n[A]\r\nx=2\r\n");
}

TEST_P(ProfilesContract, AFileWhoseContentDidNotChangeIsNotTouched) {
  host.Write(kFile, "[A]\r\nx= 1 \r\n");
  host.SetModified(kFile, 1205492401);
  EXPECT_TRUE(profiles.Write("A", "x", "1", kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Modified(kFile), 1205492401);
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx= 1 \r\n");
}

TEST_P(ProfilesContract, WritesThatCancelOutDoNotTouchTheFile) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  host.SetModified(kFile, 1205492401);
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  EXPECT_TRUE(profiles.Write("A", "x", "1", kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Modified(kFile), 1205492401);
}

TEST_P(ProfilesContract, AFlushWithoutWritesDoesNothing) {
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_TRUE(host.Names("C:\\Data").empty());
}

TEST_P(ProfilesContract, AFlushLeavesNoOtherFile) {
  AfterWrite("A", "x", "1");
  EXPECT_EQ(host.Names("C:\\Data"), std::vector<std::string>{"t.ini"});
}

TEST_P(ProfilesContract, AWriteToAMissingFolderFails) {
  EXPECT_FALSE(profiles.Write("A", "x", "1", "C:\\Missing\\t.ini"));
  EXPECT_FALSE(profiles.Write("A", "x", "1", "D:\\t.ini"));
  EXPECT_FALSE(profiles.Write("A", "x", "1", "None\\t.ini"));
}

TEST_P(ProfilesContract, AWriteToAFolderFails) {
  EXPECT_FALSE(profiles.Write("A", "x", "1", "C:\\Data"));
  EXPECT_EQ(profiles.Read("A", "x", "none", 255, "C:\\Data"), "none");
}

TEST_P(ProfilesContract, AWriteToAReadOnlyFileFailsAndLeavesIt) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  files.SetAttributes(kFile, attribute::kReadOnly);
  EXPECT_FALSE(profiles.Write("A", "x", "2", kFile));
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=1\r\n");
}

TEST_P(ProfilesContract, AFileThatBecameReadOnlyMeanwhileFailsTheFlushAndLosesTheWrites) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  files.SetAttributes(kFile, attribute::kReadOnly);
  EXPECT_FALSE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=1\r\n");
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_TRUE(profiles.Flush(kFile));
}

TEST_P(ProfilesContract, AFolderThatHasGoneAtTheFlushLosesTheWrites) {
  EXPECT_TRUE(profiles.Write("A", "x", "1", kFile));
  host.Remove("C:\\Data");
  EXPECT_FALSE(profiles.Flush(kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  host.MakeFolder("C:\\Data");
  EXPECT_EQ(Read("A", "x"), "(none)");
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_TRUE(host.Names("C:\\Data").empty());
  EXPECT_EQ(AfterWrite("A", "x", "1"), "[A]\r\nx=1\r\n");
}

TEST_P(ProfilesContract, AFolderThatHasGoneWithItsFileLosesTheWrites) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  host.Remove("C:\\Data");
  EXPECT_FALSE(profiles.Flush(kFile));
  host.MakeFolder("C:\\Data");
  host.Write(kFile, "[A]\r\nx=3\r\n");
  EXPECT_EQ(Read("A", "x"), "3");
  EXPECT_EQ(AfterWrite("A", "y", "4"), "[A]\r\nx=3\r\ny=4\r\n");
}

TEST_P(ProfilesContract, AFileThatWasRemovedMeanwhileIsMadeAnew) {
  host.Write(kFile, "[A]\r\nx=1\r\ny=1\r\n");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  host.Remove(kFile);
  EXPECT_EQ(Read("A", "x"), "2");
  EXPECT_EQ(Read("A", "y"), "(none)");
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=2\r\n");
}

TEST_P(ProfilesContract, AFolderThatWentAndCameBackIsWrittenTo) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  host.Remove("C:\\Data");
  host.MakeFolder("C:\\Data");
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=2\r\n");
  EXPECT_EQ(host.Names("C:\\Data"), std::vector<std::string>{"t.ini"});
}

TEST_P(ProfilesContract, AFileThatCannotBeReadStaysAsItIs) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  if (!host.MakeUnreadable(kFile)) GTEST_SKIP() << "this user may read every file";
  EXPECT_EQ(Read("A", "x"), "(none)");
  EXPECT_FALSE(profiles.Write("A", "x", "2", kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Names("C:\\Data"), std::vector<std::string>{"t.ini"});
  host.MakeReadable(kFile);
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=1\r\n");
}

TEST_P(ProfilesContract, AFileThatCouldNotBeReadIsNotWrittenBeforeItHasBeenRead) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  if (!host.MakeUnreadable(kFile)) GTEST_SKIP() << "this user may read every file";
  EXPECT_EQ(Read("A", "x"), "(none)");
  host.MakeReadable(kFile);
  EXPECT_FALSE(profiles.Write("A", "x", "", kFile)) << "what it holds was never seen";
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=1\r\n");
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=2\r\n");
}

TEST_P(ProfilesContract, OneKeyThatCouldNotBeReadKeepsTheWholeFileFromBeingWritten) {
  host.Write(kFile, "[A]\r\nx=1\r\ny=2\r\n");
  if (!host.MakeUnreadable(kFile)) GTEST_SKIP() << "this user may read every file";
  EXPECT_EQ(Read("A", "x"), "(none)");
  host.MakeReadable(kFile);
  EXPECT_EQ(Read("A", "y"), "2");
  EXPECT_FALSE(profiles.Write("A", "x", "", kFile)) << "that it holds 1 was never seen";
  EXPECT_EQ(Read("A", "x"), "1");
  EXPECT_TRUE(profiles.Write("A", "x", "3", kFile));
}

TEST_P(ProfilesContract, AFileThatCannotBeReadAnyMoreFailsTheFlushAndStaysAsItIs) {
  EXPECT_TRUE(profiles.Write("A", "x", "2", kFile));
  host.Write(kFile, "[A]\r\nx=1\r\n");
  if (!host.MakeUnreadable(kFile)) GTEST_SKIP() << "this user may read every file";
  EXPECT_FALSE(profiles.Flush(kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Names("C:\\Data"), std::vector<std::string>{"t.ini"});
  host.MakeReadable(kFile);
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=1\r\n");
}

TEST_P(ProfilesContract, WhatCouldNotBeReadBackIsNotWritten) {
  host.Write(kFile, "[A]\r\nx=1\r\n");
  EXPECT_FALSE(profiles.Write("A", "x", "two\r\nlines", kFile));
  EXPECT_FALSE(profiles.Write("A", "x", "two\nlines", kFile));
  EXPECT_FALSE(profiles.Write("A", "a\nb", "1", kFile));
  EXPECT_FALSE(profiles.Write("A", "a=b", "1", kFile));
  EXPECT_FALSE(profiles.Write("A", "", "1", kFile));
  EXPECT_FALSE(profiles.Write("A", ";a", "1", kFile));
  EXPECT_FALSE(profiles.Write("A", "[a", "1", kFile));
  EXPECT_FALSE(profiles.Write("A]", "a", "1", kFile));
  EXPECT_TRUE(profiles.Flush(kFile));
  EXPECT_EQ(host.Content(kFile), "[A]\r\nx=1\r\n");
}

TEST_P(ProfilesContract, BlanksAndQuotesAreWrittenAsTheyAre) {
  EXPECT_EQ(AfterWrite("A", "x", " \"y\" "), "[A]\r\nx= \"y\" \r\n");
  EXPECT_EQ(Read("A", "x"), "y");
}

TEST_P(ProfilesContract, ManyKeysAllComeBack) {
  for (int i = 0; i < 3000; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_TRUE(profiles.Write("Entries", number, "C:\\Item " + number, kFile));
  }
  ASSERT_TRUE(profiles.Flush(kFile));
  for (int i = 0; i < 3000; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(Read("Entries", number), "C:\\Item " + number);
  }
  EXPECT_EQ(Read("Entries", "3000"), "(none)");
}

}  // namespace
}  // namespace tarnvale::testing
