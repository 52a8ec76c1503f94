// The commands of the list and the storage screens.
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireList() {
  Command4.Click.Listen([this] { AddChosenFolder(); });
  Command5.Click.Listen([this] { AddChosenFiles(); });
  File1.DoubleClicked.Listen([this] { AddChosenFiles(); });
  Command1.Click.Listen([this] { RemoveSelectedItems(); });
  List1.MultiSelect = true;
  List1.GotFocus.Listen([this] { list_has_focus_ = true; });
  List1.LostFocus.Listen([this] { list_has_focus_ = false; });
}

void Form1::AddChosenFolder() {
  engine_.list.AddToBackupList(ListParts(), CheckBox3.Value ? ListCommands::Add::kWholeFolder
                                                            : ListCommands::Add::kFolderContents);
}

void Form1::AddChosenFiles() {
  engine_.list.AddToBackupList(ListParts(), ListCommands::Add::kSelectedFiles);
}

void Form1::RemoveSelectedItems() {
  engine_.list.RemoveSelected(ListParts());
}

void Form1::WireStorage() {
  chameleonButton1.Click.Listen([this] { SelectLocation(); });
  Text1.GotFocus.Listen([this] { FieldFocus(); });
}

void Form1::SelectLocation() {
  Text1.Text = StorageTree.SelectedPath;
  run_.RunDestination = settings_.DestinationDir;
}

}  // namespace tarnvale
