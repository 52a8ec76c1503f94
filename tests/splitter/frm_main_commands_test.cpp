#include <gmock/gmock.h>

#include "tests/splitter/frm_main_fixture.h"
#include "tests/splitter/splitter_fixture.h"

namespace tarnvale::testing {
namespace {

using ::testing::IsEmpty;

class FrmMainSplitTest : public FrmMainTest {
 protected:
  FrmMainSplitTest() { form.txtSFName.Text = source; }

  /// One byte is 2^-20 MB.
  void GivenSize(const char* megabytes) {
    form.Combo1.Text = "Manual Size";
    form.txtSegSize.Text = megabytes;
  }
  const char* const one_byte = "0.00000095367431640625";
  const char* const two_bytes = "0.0000019073486328125";

  const Path source = "C:\\in\\backup.tvz";
};

TEST_F(FrmMainSplitTest, AnUntouchedMediumSplitsForFloppyDisks) {
  const std::string bytes = GeneratedBytes(3000000);
  machine.files.Write(source, bytes);
  Tick();
  machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
  ExpectSuccess("The Splitting Was Completed. The File Was Split Into 3 Parts.");
  Click(form.chameleonButton2);
  EXPECT_TRUE(machine.files.Content("C:\\out\\backup.tvz.001") == bytes.substr(0, 1447035));
  EXPECT_TRUE(machine.files.Content("C:\\out\\backup.tvz.003") == bytes.substr(2 * 1447035));
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Successfully Done");
  EXPECT_EQ(machine.dialogs.Seen()[0].folder.prompt, "Select A Folder:");
  EXPECT_TRUE(form.chameleonButton2.Enabled);
  EXPECT_EQ(form.XP_ProgressBar2.Value, 100);
}

TEST_F(FrmMainSplitTest, ADvdEndsTheCommandWithTheOverflow) {
  machine.files.Write(source, "abcd");
  for (const char* medium : {"DVD-ROM 3.8 GBs", "DVD-ROM DL 8.4 GBs"}) {
    form.Combo1.Text = medium;
    Tick();
    machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
    machine.ExpectFault(6);
    Click(form.chameleonButton2);
    EXPECT_FALSE(form.chameleonButton2.Enabled) << "left as it was";
    Tick();
    EXPECT_TRUE(form.chameleonButton2.Enabled);
  }
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
  EXPECT_THAT(machine.files.Names("C:\\out"), IsEmpty());
}

TEST_F(FrmMainSplitTest, ASizeThatIsNoNumberEndsInTheErrorMessage) {
  machine.files.Write(source, "abcd");
  form.Combo1.Text = "Manual Size";
  for (const char* size : {"abc", "0.0000004", ""}) {
    form.txtSegSize.Text = size;
    Tick();
    machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
    ExpectError(split_error);
    Click(form.chameleonButton2);
  }
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Error");
  EXPECT_TRUE(form.chameleonButton2.Enabled);
}

TEST_F(FrmMainSplitTest, AllFailuresGiveTheSameMessage) {
  const auto fails = [&] {
    machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
    ExpectError(split_error);
    Click(form.chameleonButton2);
  };
  fails();  // no such file
  machine.files.Write(source, GeneratedBytes(1000));
  GivenSize(one_byte);
  fails();  // too many parts
  GivenSize(two_bytes);
  machine.open_files.FailNext("Write", 61);
  fails();
  EXPECT_EQ(machine.open_files.OpenCount(), 0);
}

TEST_F(FrmMainSplitTest, ACancelledFolderKeepsTheLastOne) {
  machine.files.Write(source, "abcd");
  form.Text3.Text = "C:\\out";
  machine.dialogs.Cancel(Dialog::kFolder);
  ExpectSuccess(part_of_one);
  Click(form.chameleonButton2);
  EXPECT_EQ(machine.files.Content("C:\\out\\backup.tvz.001"), "abcd");
}

TEST_F(FrmMainSplitTest, WithNoFolderYetThePartsGoToTheRoot) {
  machine.files.Write(source, "abcd");
  machine.dialogs.Cancel(Dialog::kFolder);
  ExpectSuccess(part_of_one);
  Click(form.chameleonButton2);
  EXPECT_EQ(machine.files.Content("C:\\backup.tvz.001"), "abcd");
}

TEST_F(FrmMainSplitTest, TheFieldsAreReadBehindTheFolderDialog) {
  machine.files.Write(source, "abcd");
  machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
  machine.dialogs.WhileOpen([&] { GivenSize(two_bytes); });
  ExpectSuccess("The Splitting Was Completed. The File Was Split Into 2 Parts.");
  Click(form.chameleonButton2);
}

TEST_F(FrmMainSplitTest, TheNextTickEnablesTheButtonAndASecondRunBreaksBoth) {
  machine.files.Write(source, "abcdef");
  Tick();
  machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
  machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
  bool was_enabled = false;
  // The folder dialog takes the first yield.
  machine.loop.OnYield(2, [&] {
    Tick();
    was_enabled = form.chameleonButton2.Enabled;
    Click(form.chameleonButton2);
  });
  ExpectError(split_error);
  ExpectError(split_error);
  Click(form.chameleonButton2);
  EXPECT_TRUE(was_enabled);
}

TEST_F(FrmMainSplitTest, ANegativeSizeNeverReturnsAndTheWindowStaysAlive) {
  machine.files.Write(source, "abcd");
  form.Combo1.Text = "Manual Size";
  form.txtSegSize.Text = "-1";
  machine.dialogs.Choose(Dialog::kFolder, "C:\\out");
  machine.loop.OnYield(100, [&] {
    EXPECT_TRUE(form.chameleonButton2.Enabled) << "its timer ticks";
    form.Label3.Clicked.Emit();
  });
  machine.loop.OnYield(200, [] { throw LeftByTest(); });
  EXPECT_THROW(Click(form.chameleonButton2), LeftByTest);
  EXPECT_FALSE(form.Visible);
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

class FrmMainJoinTest : public FrmMainTest {
 protected:
  FrmMainJoinTest() {
    machine.files.Write("C:\\in\\a.tvz.001", "abcd");
    machine.files.Write("C:\\in\\a.tvz.002", "ef");
    form.txtSegfname.Text = "C:\\in\\a.tvz.001";
  }

  const std::string joined = "The Combining Was Completed. The File Was Built From 2 Parts.";
};

TEST_F(FrmMainJoinTest, TheJoinedFileMovesToTheChosenPath) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\out\\b.tvz");
  ExpectSuccess(joined);
  Click(form.chameleonButton1);
  EXPECT_EQ(machine.files.Content("C:\\out\\b.tvz"), "abcdef");
  EXPECT_FALSE(machine.files.Exists("C:\\in\\a.tvz"));
  EXPECT_TRUE(machine.files.Exists("C:\\in\\a.tvz.001"));
  EXPECT_EQ(form.Text1.Text.Get(), "C:\\out\\b.tvz");
  EXPECT_EQ(form.Text2.Text.Get(), "C:\\in\\a.tvz");
  EXPECT_EQ(form.txtSegfname.Text.Get(), "C:\\in\\a.tvz.001");
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Successfully Done");
  EXPECT_TRUE(form.chameleonButton1.Enabled);
  const FileDialogRecord& record = machine.dialogs.Seen()[0].file;
  EXPECT_EQ(WithBars(record.filter), "Tarnvale Compressed File (*.tvz)|*.tvz||");
  EXPECT_EQ(record.default_ext, ".tvz");
}

TEST_F(FrmMainJoinTest, ARefusedSecondJoinLeavesItsFileAlone) {
  machine.files.Write("C:\\in\\other.tvz", "the original");
  machine.files.Write("C:\\in\\other.tvz.001", "the");
  machine.loop.OnYield(1, [&] {
    Tick();
    form.txtSegfname.Text = "C:\\in\\other.tvz.001";
    Click(form.chameleonButton1);
  });
  machine.dialogs.Choose(Dialog::kSave, "C:\\out\\b.tvz");
  ExpectSuccess(joined);
  Click(form.chameleonButton1);
  EXPECT_EQ(machine.files.Content("C:\\out\\b.tvz"), "abcdef");
  EXPECT_TRUE(machine.files.Exists("C:\\in\\other.tvz"));
  EXPECT_FALSE(machine.files.Exists("C:\\in\\a.tvz"));
}

TEST_F(FrmMainJoinTest, TheSamePathKeepsTheJoinedFile) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\in\\a.tvz");
  ExpectSuccess(joined);
  Click(form.chameleonButton1);
  EXPECT_EQ(machine.files.Content("C:\\in\\a.tvz"), "abcdef");
  EXPECT_EQ(machine.files.CallsOf("Delete"), 0);
}

TEST_F(FrmMainJoinTest, AFailedCopyIsSilentAndTheJoinedFileGoesAllTheSame) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\out\\b.tvz");
  machine.files.FailNext("CopyWhole", 61);
  ExpectSuccess(joined);
  Click(form.chameleonButton1);
  EXPECT_FALSE(machine.files.Exists("C:\\out\\b.tvz"));
  EXPECT_FALSE(machine.files.Exists("C:\\in\\a.tvz"));
}

TEST_F(FrmMainJoinTest, AFailedDeletionIsSilent) {
  machine.dialogs.Choose(Dialog::kSave, "C:\\out\\b.tvz");
  machine.files.FailNext("Delete", 70);
  ExpectSuccess(joined);
  Click(form.chameleonButton1);
  EXPECT_TRUE(machine.files.Exists("C:\\in\\a.tvz"));
}

TEST_F(FrmMainJoinTest, CancellingTheSaveReportsFragmentsThoughTheJoinSucceeded) {
  machine.dialogs.Cancel(Dialog::kSave);
  ExpectError(join_error);
  Click(form.chameleonButton1);
  EXPECT_EQ(machine.boxes.Shown()[0].title, "Error");
  EXPECT_EQ(machine.files.Content("C:\\in\\a.tvz"), "abcdef");
  EXPECT_EQ(form.Text1.Text.Get(), "Text1");
  EXPECT_TRUE(form.chameleonButton1.Enabled);
}

// Boxes and dialogs that nobody announced fail the test.
TEST_F(FrmMainJoinTest, AMissingFirstPartShowsNothing) {
  machine.files.Remove("C:\\in\\a.tvz.001");
  form.txtSegfname.Text = "C:\\in\\a.tvz.002";
  Click(form.chameleonButton1);
  EXPECT_FALSE(form.chameleonButton1.Enabled);
  Tick();
  EXPECT_TRUE(form.chameleonButton1.Enabled);
  EXPECT_THAT(machine.boxes.Shown(), IsEmpty());
}

TEST_F(FrmMainJoinTest, AllOtherFailuresShowNothingEither) {
  form.txtSegfname.Text = "C:\\in\\none.001";
  Click(form.chameleonButton1);
  form.txtSegfname.Text = "C:\\in\\a.tvz.001";
  machine.open_files.FailNext("Write", 61);
  Click(form.chameleonButton1);
  machine.files.Write("C:\\in\\a.tvz", "unsplit");
  Click(form.chameleonButton1);
  EXPECT_EQ(machine.files.Content("C:\\in\\a.tvz"), "unsplit");
  EXPECT_THAT(BoxTexts(), IsEmpty());
  EXPECT_FALSE(form.chameleonButton1.Enabled);
}

TEST_F(FrmMainJoinTest, AnEmptyNameShowsNothing) {
  form.txtSegfname.Text = "";
  Click(form.chameleonButton1);
  EXPECT_THAT(BoxTexts(), IsEmpty());
}

}  // namespace
}  // namespace tarnvale::testing
