#include "shell/screens/list_screen.h"

#include "shell/screens/screen.h"

namespace tarnvale {

ListScreen::ListScreen(Window& window, Engine& engine)
    : File1(engine.machine().files),
      List1(engine.settings.Entries),
      window_(window),
      engine_(engine) {
  Command4.Click.Listen([this] { AddChosenFolder(); });
  Command5.Click.Listen([this] { AddChosenFiles(); });
  File1.DoubleClicked.Listen([this] { AddChosenFiles(); });
  Command1.Click.Listen([this] { RemoveSelectedItems(); });
  List1.MultiSelect = true;
  List1.GotFocus.Listen([this] { list_has_focus_ = true; });
  List1.LostFocus.Listen([this] { list_has_focus_ = false; });
  engine.timers.At(EngineTimer::kPaneFilters, [this] { MirrorPaneFilters(); });
}

void ListScreen::LayOut() {
  GroupBox1.Caption = "Include Files In My Backup List";
  ListTree.AccessibleName = "Folders";
  File1.AccessibleName = "Files Of The Folder";
  Check2.Caption = "Filter With Extension";
  Text2.AccessibleName = "Extension";
  Check1.Caption = "Show Hidden";
  Check3.Caption = "Show System";
  Check4.Caption = "Show Read-Only";
  CheckBox3.Caption = "Include Sub Directories";
  Command4.Caption = " Backup This Directory's Contents";
  Command5.Caption = " Backup Selected Items";
  ListHeading.Caption = "Selected Files && Directories For Backup: ";
  List1.AccessibleName = "Selected Files And Directories For Backup";
  Command1.Caption = " Remove Selected Item(s) From Backup";
  for (chameleonButton* button : {&Command1, &Command4, &Command5}) {
    button->ButtonType = kButtonType;
  }

  Control* screen = &GroupBox1;
  window_.Place({
      {screen, nullptr, kScreen},
      {&Picture1, screen, {16, 28, 250, 232}},
      {&ListTree, &Picture1, {0, 0, 250, 232}},
      {&File1, screen, {278, 28, 354, 172}},
      {&Check2, screen, {278, 208, 170, 24}},
      {&Text2, screen, {456, 208, 176, 24}},
      {&Check1, screen, {278, 238, 110, 22}},
      {&Check3, screen, {394, 238, 110, 22}},
      {&Check4, screen, {506, 238, 126, 22}},
      {&CheckBox3, screen, {16, 268, 250, 22}},
      {&Command4, screen, {16, 296, 250, 28}},
      {&Command5, screen, {278, 296, 354, 28}},
      {&ListHeading, screen, {16, 338, 616, 20}},
      {&List1, screen, {16, 362, 616, 132}},
      {&Command1, screen, {16, 504, 250, 28}},
  });
}

void ListScreen::AddChosenFolder() {
  engine_.list.AddToBackupList(Fields(), CheckBox3.Value ? ListCommands::Add::kWholeFolder
                                                         : ListCommands::Add::kFolderContents);
}

void ListScreen::AddChosenFiles() {
  engine_.list.AddToBackupList(Fields(), ListCommands::Add::kSelectedFiles);
}

void ListScreen::RemoveSelectedItems() {
  engine_.list.RemoveSelected(Fields());
}

void ListScreen::MirrorPaneFilters() {
  // Chosen: the hidden and the read-only flag are the two that follow the first
  // box. Required: the third box isn't read.
  File1.ShowHidden = Check1.Value;
  File1.ShowReadOnly = Check1.Value;
  File1.ShowSystem = Check3.Value;
  Text2.Enabled = Check2.Value;
  File1.Pattern = Check2.Value ? "*" + Text2.Text.Get() + "*" : std::string("*.*");
}

void ListScreen::FollowTree() {
  Text3.Text = ListTree.SelectedPath;
  File1.Folder = Text3.Text;
}

}  // namespace tarnvale
