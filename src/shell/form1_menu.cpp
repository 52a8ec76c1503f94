// The menu and the links that do something other than show a screen.
#include "shell/form1.h"

namespace tarnvale {

void Form1::WireMenu() {
  mnuMenu.Add(mnuBackup);
  mnuMenu.Add(mnuwizard);
  mnuwizard.Add(mnuSchedule);
  mnuwizard.Add(mnufiles);
  mnuwizard.Add(mnustorage);
  mnuwizard.Add(mnusave);
  mnuMenu.Add(mnuOptions);
  mnuOptions.Add(mnusettings);
  mnuOptions.Add(mnucompauto);
  mnuMenu.AddSeparator();
  mnuMenu.Add(mnutools);
  for (MenuItem* tool : {&mnudata, &mnusplitter, &mnuregistry, &mnuFTP, &mnuCompressor}) {
    mnutools.Add(*tool);
  }
  mnuMenu.AddSeparator();
  mnuMenu.Add(mnuQuit);
  MenuBar = {&mnuMenu};

  Label49.Clicked.Listen([this] {
    engine_.AskAndStart("Tarnvale Will Now Perform A Backup On Your Files. Proceed?");
  });
  mnuBackup.Clicked.Listen([this] {
    engine_.AskAndStart(
        "Tarnvale Will Now Perform A Backup For Your Files - Compression & FTP Upload Will Occur "
        "If Selected. Proceed?");
  });
  Label45.Clicked.Listen(
      [this] { SaveSettings("Your Tarnvale Settings Have Been Sucessfully Saved"); });
  mnusave.Clicked.Listen([this] { SaveSettings("Tarnvale Settings Saved To Your U3 Device"); });
  Label50.Clicked.Listen([this] { engine_.OpenLog(); });
}

}  // namespace tarnvale
