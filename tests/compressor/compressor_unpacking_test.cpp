// The compressor unpacks and lists, and what happens during an operation.
#include "compressor/compressor_window.h"

#include <gmock/gmock.h>

#include "tests/compressor/compressor_window_fixture.h"
#include "ui/file_dialog.h"

namespace tarnvale::testing {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using Kind = FakeDialogs::Kind;
using CompressorUnpackingTest = CompressorWindowTest;

// Unpacking.

TEST_F(CompressorUnpackingTest, UnpacksAChosenArchiveIntoAChosenFolder) {
  PackByHand("C:\\Data", kArchive);
  Unpack(kArchive, "C:\\Out");
  ASSERT_THAT(DialogsSeen(), ElementsAre(Kind::kFolder, Kind::kSave, Kind::kOpen, Kind::kFolder));
  const auto& dialogs = machine.dialogs.Seen();
  EXPECT_EQ(dialogs[2].file.filter, kFilter);
  EXPECT_EQ(dialogs[3].folder.prompt, "Please Select Directory To Extract To:");
  EXPECT_EQ(files.Content("C:\\Out\\a.txt"), "hi");
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
}

TEST_F(CompressorUnpackingTest, ShowsEveryStepOfAnUnpackingInItsOrder) {
  PackByHand("C:\\Data", kArchive);
  FollowAll();
  Unpack(kArchive, "C:\\Out");
  // clang-format off
  EXPECT_THAT(shown, ElementsAre(
      "10: Starting To Extract",
      "10 ticked", "10: Starting To Extract... Done", "9: Decompressing Archive (0%)",
      "9: Decompressing Compressed Files (89%)", "bar 2: 89",
      "9: Decompressing Compressed Files (100%)", "bar 2: 100",
      "9 ticked", "9: Decompressing Compressed File... Done",
      "8: Reading Compressed Backup File",
      "8 ticked", "7: Extracting (0%)",
      "Text6: All Files Have Been Sucessfully Decompressed",
      "7: Extracting Files (50%)", "bar 2: 50",
      "7: Extracting Files (100%)", "bar 2: 100",
      "7 ticked", "7: Extracting Files... Done",
      "6 ticked", "6: Done"));
  // clang-format on
}

TEST_F(CompressorUnpackingTest, TheMessageOfSuccessComesBeforeTheFirstFileIsWritten) {
  PackByHand("C:\\Data", kArchive);
  bool written = true;
  window.Text6.Text.Changed().Listen([&] { written = files.Exists("C:\\Out\\a.txt"); });
  Unpack(kArchive, "C:\\Out");
  EXPECT_FALSE(written);
}

TEST_F(CompressorUnpackingTest, CancellingTheOpenDialogShowsTheUnpackingStepsOnly) {
  machine.dialogs.Cancel(Kind::kOpen);
  Click(window.Command2);
  EXPECT_EQ(VisibleSteps(), unpacking_steps);
  EXPECT_EQ(window.CheckBox10.Caption.Get(), "");
}

TEST_F(CompressorUnpackingTest, CancellingTheFolderUnpacksNothing) {
  PackByHand("C:\\Data", kArchive);
  machine.dialogs.Choose(Kind::kOpen, kArchive);
  machine.dialogs.Cancel(Kind::kFolder);
  Click(window.Command2);
  EXPECT_EQ(window.CheckBox10.Caption.Get(), "");
}

TEST_F(CompressorUnpackingTest, AMissingArchiveIsReportedInTheArchiversBox) {
  machine.boxes.Expect("The archive does not exist!", BoxIcon::kStop, BoxAnswer::kOk);
  Unpack("C:\\Store\\missing.tvz", "C:\\Out");
  EXPECT_EQ(window.CheckBox10.Caption.Get(), "Starting To Extract");
  EXPECT_FALSE(window.CheckBox10.Checked);
}

TEST_F(CompressorUnpackingTest, AFailureOfUnpackingVanishesAndTheStepsStandStill) {
  files.Write(kArchive, "no archive at all");
  Unpack(kArchive, "C:\\Out");
  EXPECT_TRUE(window.CheckBox10.Checked);
  EXPECT_FALSE(window.CheckBox9.Checked);
  EXPECT_EQ(window.CheckBox9.Caption.Get(), "Decompressing Archive (0%)");
  EXPECT_FALSE(files.Exists("C:\\Out"));
}

TEST_F(CompressorUnpackingTest, ASecondUnpackingKeepsTheTicks) {
  PackByHand("C:\\Data", kArchive);
  Unpack(kArchive, "C:\\Out");
  FollowAll();
  Unpack(kArchive, "C:\\Again");
  EXPECT_EQ(shown.front(), "10: Starting To Extract");
  EXPECT_THAT(shown, Not(Contains("10 cleared")));
  EXPECT_EQ(window.CheckBox6.Caption.Get(), "Done");
  EXPECT_TRUE(window.CheckBox6.Checked);
}

// Listing.

TEST_F(CompressorUnpackingTest, ListsAnArchive) {
  PackByHand("C:\\Data", kArchive);
  FollowAll();
  List(kArchive);
  EXPECT_EQ(machine.dialogs.Seen().back().file.filter, kFilter);
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt", "sub\\b.txt"));
  EXPECT_THAT(shown, ElementsAre("Text2: Starting", "Text2: Decompressing", "Text3: 89%",
                                 "Text3: 100%", "Text2: Reading", "Text2: Done"));
}

TEST_F(CompressorUnpackingTest, ASecondListingComesBehindTheFirst) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  List(kArchive);
  EXPECT_THAT(window.List1.Rows.Rows(), ElementsAre("a.txt", "sub\\b.txt", "a.txt", "sub\\b.txt"));
}

TEST_F(CompressorUnpackingTest, NothingGuardsACancelledListing) {
  machine.dialogs.Cancel(Kind::kOpen);
  machine.ExpectFault(CommonDialog::kCancelled);
  Click(window.Command3);
  EXPECT_EQ(window.Text2.Text.Get(), "Ready");
}

TEST_F(CompressorUnpackingTest, NothingGuardsAListingThatFails) {
  PackByHand("C:\\Data", kArchive);
  machine.files.FailNext("List", kDeviceUnavailable);
  machine.ExpectFault(kDeviceUnavailable);
  List(kArchive);
  EXPECT_EQ(window.Text2.Text.Get(), "Starting");
}

TEST_F(CompressorUnpackingTest, ListingAMissingArchiveShowsTheArchiversBox) {
  machine.boxes.Expect("The Archive Does Not Exist!", BoxIcon::kStop, BoxAnswer::kOk);
  List("C:\\Store\\missing.tvz");
  EXPECT_THAT(window.List1.Rows.Rows(), IsEmpty());
}

// One entry.

TEST_F(CompressorUnpackingTest, ExtractsTheSelectedEntryAlone) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  window.List1.Select(1, true);
  window.Text3.Text = "%";
  FollowAll();
  ExtractEntry(kArchive, "C:\\Out");
  const auto& dialogs = machine.dialogs.Seen();
  EXPECT_EQ(dialogs[dialogs.size() - 2].file.filter, kFilter);
  EXPECT_EQ(dialogs.back().folder.prompt, "Please Select Directory To Rxtract To:");
  EXPECT_THAT(files.Names("C:\\Out"), ElementsAre("sub"));
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
  EXPECT_THAT(shown, ElementsAre("Text2: Starting", "Text2: Decompressing", "Text3: 89%",
                                 "Text3: 100%", "Text2: Reading", "Text2: Done"));
}

TEST_F(CompressorUnpackingTest, WithNoEntrySelectedNothingIsExtracted) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  ExtractEntry(kArchive, "C:\\Out");
  EXPECT_FALSE(files.Exists("C:\\Out"));
  EXPECT_EQ(window.Text2.Text.Get(), "Done");
}

TEST_F(CompressorUnpackingTest, CancellingADialogOfAnEntryEndsTheCommand) {
  machine.dialogs.Cancel(Kind::kOpen);
  Click(window.Command4);
  machine.dialogs.Choose(Kind::kOpen, kArchive);
  machine.dialogs.Cancel(Kind::kFolder);
  Click(window.Command4);
  EXPECT_EQ(window.Text2.Text.Get(), "Ready");
}

TEST_F(CompressorUnpackingTest, AFailureOfExtractingAnEntryVanishes) {
  files.Write(kArchive, "no archive at all");
  ExtractEntry(kArchive, "C:\\Out");
  EXPECT_EQ(window.Text2.Text.Get(), "Decompressing");
}

TEST_F(CompressorUnpackingTest, AfterAnEntryCameOutTheNextUnpackingFailsSilently) {
  PackByHand("C:\\Data", kArchive);
  List(kArchive);
  window.List1.Select(0, true);
  ExtractEntry(kArchive, "C:\\Out");
  Unpack(kArchive, "C:\\Again");
  EXPECT_FALSE(files.Exists("C:\\Again"));
  EXPECT_FALSE(window.CheckBox9.Checked);
}

// During an operation.

TEST_F(CompressorUnpackingTest, TheTimerTicksDuringAnOperation) {
  machine.Advance(200ms);
  machine.loop.OnYield(1, [&] {
    settings.DestinationDir = "C:\\Other";
    machine.Advance(200ms);
  });
  window.Compress();
  EXPECT_EQ(window.Text1.Text.Get(), "C:\\Other");
}

TEST_F(CompressorUnpackingTest, AClickDuringAnOperationStartsASecondOneWithinIt) {
  PackByHand("C:\\Data", kArchive);
  machine.Advance(200ms);
  machine.loop.OnYield(1, [&] { Unpack(kArchive, "C:\\Out"); });
  window.Compress();
  EXPECT_EQ(files.Content("C:\\Out\\sub\\b.txt"), "hello");
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
  EXPECT_EQ(window.CheckBox6.Caption.Get(), "Done");
  EXPECT_EQ(window.CheckBox5.Caption.Get(), "Successfully Done");
}

TEST_F(CompressorUnpackingTest, ClosingItDuringAnOperationLetsTheOperationEnd) {
  machine.Advance(200ms);
  window.Show();
  machine.loop.OnYield(1, [&] { Click(window.Label2); });
  window.Compress();
  EXPECT_FALSE(window.Visible);
  EXPECT_TRUE(files.Exists("C:\\Store\\Auto Compressed.tvz"));
}

}  // namespace
}  // namespace tarnvale::testing
