// Every way out but the tray's.
#include <QTest>

#include <filesystem>

#include "tests/gui/gui_fixture.h"

namespace tarnvale::testing {
namespace {

using GuiExit = GuiTest;

TEST_F(GuiExit, TheMenuLeavesWithoutAQuestionAndTheWindowStaysUpUntilTheEnd) {
  Program& p = StartAndBringUp();
  ChooseInMenuBar({"File", "Exit"});
  EXPECT_TRUE(WaitFor([&] { return Starts("Quit.exe") == 1; }));
  EXPECT_TRUE(NativeOf(p.form).isVisible());
}

TEST_F(GuiExit, TheCrossAsksAndNoKeepsTheProgram) {
  Program& p = StartAndBringUp();
  AnswerNextBox(QMessageBox::No);
  NativeOf(p.form).close();
  EXPECT_EQ(box_text, "Are You Sure You Want You Exit Tarnvale Now?");
  EXPECT_EQ(box_title, "Exit Tarnvale");
  EXPECT_TRUE(WaitUntilActive(p.form));
  EXPECT_EQ(Starts("Quit.exe"), 0);
  Click(p.form.Label37);
  EXPECT_TRUE(p.form.List.GroupBox1.Visible);
}

TEST_F(GuiExit, TheCrossAsksAndYesEndsTheProgram) {
  Program& p = StartAndBringUp();
  AnswerNextBox(QMessageBox::Yes);
  NativeOf(p.form).close();
  EXPECT_FALSE(p.form.Visible);
  EXPECT_TRUE(WaitFor([&] { return Starts("Quit.exe") == 1; }));
  EXPECT_EQ(loop.Run(), 0) << "the loop was to end";
}

TEST_F(GuiExit, AWindowThatIsMinimizedIsAskedAboutToo) {
  Program& p = Start();
  EndSplash();
  ASSERT_TRUE(WaitFor([&] { return NativeOf(p.form).isMinimized(); }));
  AnswerNextBox(QMessageBox::No);
  NativeOf(p.form).close();
  EXPECT_EQ(box_title, "Exit Tarnvale");
}

TEST_F(GuiExit, ADataFolderThatGoesAwayStartsTheEnd) {
  StartAndBringUp();
  std::filesystem::remove_all(Native("Data"));
  EXPECT_TRUE(WaitFor([&] { return Starts("Quit.exe") > 1; })) << "again and again";
}

}  // namespace
}  // namespace tarnvale::testing
