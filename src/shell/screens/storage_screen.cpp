#include "shell/screens/storage_screen.h"

#include "shell/screens/screen.h"

namespace tarnvale {

StorageScreen::StorageScreen(Window& window, Engine& engine)
    : Text1(engine.settings.DestinationDir), window_(window), engine_(engine) {
  chameleonButton1.Click.Listen([this] { SelectLocation(); });
  Text1.GotFocus.Listen([this] { FieldFocus(engine_.machine().desktop, window_); });
  engine.screens.FocusStorageField = [this] { window_.Focus(Text1); };
}

void StorageScreen::LayOut() {
  GroupBox2.Caption = "Storage Location For Backup";
  StorageHeading.Caption = "Select Directory Where You Want To Backup Your Files";
  StorageTree.AccessibleName = "Folders For Storage";
  PathLabel.Caption = "Selected Backup Folder Path";
  Text1.AccessibleName = "Selected Backup Folder Path";
  chameleonButton1.Caption = "Select This Location For My Backup Files";
  chameleonButton1.ButtonType = kButtonType;

  Control* screen = &GroupBox2;
  window_.Place({
      {screen, nullptr, kScreen},
      {&StorageHeading, screen, {16, 28, 616, 20}},
      {&picBrowse, screen, {16, 54, 616, 372}},
      {&StorageTree, &picBrowse, {0, 0, 616, 372}},
      {&PathLabel, screen, {16, 440, 616, 20}},
      {&Text1, screen, {16, 464, 616, 24}},
      {&chameleonButton1, screen, {16, 500, 300, 30}},
  });
}

void StorageScreen::SelectLocation() {
  Text1.Text = StorageTree.SelectedPath;
  engine_.run.RunDestination = engine_.settings.DestinationDir;
}

}  // namespace tarnvale
